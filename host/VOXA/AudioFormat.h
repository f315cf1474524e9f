// The format in which a reader delivers audio.
#pragma once

#include "host/VOXA/Export.h"

namespace VOXA {

/// A value type.
class VOXA_API AudioFormat {
 public:
  /// Returns a format of signed 16-bit samples with interleaved channels. `sampleRate` is in
  /// samples per second.
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
