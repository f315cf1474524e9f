// The form in which a reader is to deliver audio.
#pragma once

#include "host/VOXA/Export.h"

namespace VOXA {

/// A plain value.
class VOXA_API AudioFormat {
 public:
  /// 16-bit signed samples, the channels interleaved. `sampleRate` is in samples per second.
  static AudioFormat create16BitSignedInterleaved(int sampleRate, int channelCount);

  int sampleRate() const { return m_sampleRate; }
  int channelCount() const { return m_channelCount; }

 private:
  AudioFormat(int sampleRate, int channelCount)
      : m_sampleRate(sampleRate), m_channelCount(channelCount) {}

  int m_sampleRate;
  int m_channelCount;
};

}  // namespace VOXA
