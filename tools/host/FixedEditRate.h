// The edit rate of a project that has one for good.
#pragma once

#include "host/Kestova/ProjectEditRate.h"

namespace hosting {

/// Immutable, so that any thread may call it.
class FixedEditRate final : public Kestova::ProjectEditRate {
 public:
  /// Frames per second.
  explicit FixedEditRate(const boost::rational<unsigned int>& rate) : m_rate(rate) {}
  boost::rational<unsigned int> editRate() const override { return m_rate; }

 private:
  const boost::rational<unsigned int> m_rate;
};

}  // namespace hosting
