// A project edit rate for tests that load streams.
#pragma once

#include <boost/rational.hpp>

#include "host/Kestova/ProjectEditRate.h"

namespace testing_support {

/// 30 frames per second. Counts how often it was read.
class ConstantEditRate final : public Kestova::ProjectEditRate {
 public:
  boost::rational<unsigned int> editRate() const override {
    ++readCount;
    return 30;
  }
  mutable int readCount = 0;
};

}  // namespace testing_support
