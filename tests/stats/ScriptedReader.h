// A recording reader whose results a test chooses. It replaces the VOXA library.
#pragma once

#include <string>
#include <vector>

#include "host/VOXA/Export.h"

namespace testing_support {

struct ScriptedTrack {
  unsigned int width;
  unsigned int height;
  std::vector<int> kinds;  // one result per call; the last one repeats
  unsigned int rate;
  long long length;
  unsigned int tag;
};

struct Script {
  bool opens = true;
  std::vector<ScriptedTrack> tracks;
  std::string calls;  // the calls of the code under test
};

/// The results of readers from now on.
VOXA_API Script& script();

}  // namespace testing_support
