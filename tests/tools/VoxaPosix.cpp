#include <sys/wait.h>

#include <cstdlib>

#include "tests/support/TempFolder.h"
#include "tests/tools/Voxa.h"

namespace testing_support {

namespace {

std::string quoted(const std::string& argument) {
  return "'" + argument + "'";
}

}  // namespace

Result voxa(const std::vector<std::string>& arguments) {
  const TempFolder folder;
  std::string command = quoted(KESTOVA_VOXA);
  for (const std::string& argument : arguments) command += " " + quoted(argument);
  command += " > " + quoted(folder.name("out")) + " 2> " + quoted(folder.name("error"));
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, bytesOfFile(folder.name("out")),
          bytesOfFile(folder.name("error"))};
}

}  // namespace testing_support
