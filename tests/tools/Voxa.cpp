#include "tests/tools/Voxa.h"

#include <cstdlib>

#include "tests/support/TempFolder.h"

#ifndef _WIN32
#include <sys/wait.h>
#endif

namespace testing_support {

namespace {

std::string quoted(const std::string& argument) {
  return "\"" + argument + "\"";
}

int exitStatus(int result) {
#ifdef _WIN32
  return result;
#else
  return WIFEXITED(result) ? WEXITSTATUS(result) : -1;
#endif
}

}  // namespace

Result voxa(const std::vector<std::string>& arguments) {
  const TempFolder folder;
  std::string command = quoted(KESTOVA_VOXA);
  for (const std::string& argument : arguments) command += " " + quoted(argument);
  command += " > " + quoted(folder.name("out")) + " 2> " + quoted(folder.name("error"));
  Result run;
  run.status = exitStatus(std::system(command.c_str()));
  run.out = bytesOfFile(folder.name("out"));
  run.error = bytesOfFile(folder.name("error"));
  return run;
}

}  // namespace testing_support
