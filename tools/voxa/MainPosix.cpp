#include <sys/resource.h>

#include <vector>

#include "tools/voxa/Program.h"

namespace {

// A sidecar folder has a file for each stream, all of which are open at once. Many systems let a
// process open 1,024 files unless it asks for more.
void raiseLimitOfOpenFiles() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &limit);  // where this fails, the opening of a file says so
}

}  // namespace

int main(int argc, char** argv) {
  raiseLimitOfOpenFiles();
  return voxa::run(argc > 0 ? std::vector<std::string>(argv + 1, argv + argc)
                            : std::vector<std::string>());
}
