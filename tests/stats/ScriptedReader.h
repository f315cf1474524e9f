// A recording reader that says what a test wants, in the place of the real one.
#pragma once

#include <string>
#include <vector>

#include "host/VOXA/Export.h"

namespace testing_support {

struct ScriptedTrack {
  unsigned int width;
  unsigned int height;
  std::vector<int> kinds;  // one answer a question; the last one stays
  unsigned int rate;
  long long length;
  unsigned int tag;
};

struct Script {
  bool opens = true;
  std::vector<ScriptedTrack> tracks;
  std::string calls;  // what the code under test asked
};

/// The script of the next reader.
VOXA_API Script& script();

}  // namespace testing_support
