#include "tools/voxa/Program.h"

int main(int argc, char** argv) {
  return voxa::run(argc > 0 ? std::vector<std::string>(argv + 1, argv + argc)
                            : std::vector<std::string>());
}
