// Thrown for a keyframe that is missing or whose placement is refused.
#pragma once

#include "host/Kestova/KestovaException.h"
#include "host/Kestova/RationalTime.h"

namespace Kestova {

class KESTOVA_API KeyFrameException : public KestovaException {
 public:
  /// `message` is the name of the parameter.
  KeyFrameException(const RationalTime& time, const std::string& message);
  ~KeyFrameException() override;

  /// The time of the keyframe, in the unit of the parameter. The reference is valid as long as the
  /// exception.
  const RationalTime& time() const { return m_time; }

 private:
  RationalTime m_time;
};

}  // namespace Kestova
