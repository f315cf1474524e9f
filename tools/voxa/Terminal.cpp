#include "tools/voxa/Terminal.h"

#include <cstdlib>

namespace voxa {

bool usesColors(StandardStream stream) {
  const char* const refusal = std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe)
  return (refusal == nullptr || *refusal == '\0') && knowsColors(stream);
}

}  // namespace voxa
