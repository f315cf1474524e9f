// A project edit rate for tests that load streams.
#pragma once

#include <atomic>
#include <boost/rational.hpp>

#include "host/Kestova/ProjectEditRate.h"

namespace testing_support {

/// 30 frames per second. Counts how often it was read. Loads of several threads may share one.
class ConstantEditRate final : public Kestova::ProjectEditRate {
 public:
  boost::rational<unsigned int> editRate() const override {
    ++readCount;
    return 30;
  }
  mutable std::atomic<int> readCount{0};
};

}  // namespace testing_support
