// The stream of a command that reads one.
#pragma once

#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "tools/voxa/StreamChoice.h"

namespace voxa {

/// Returns the stream `name`, as the record type `type`, or with the guessed type where that is
/// empty. Throws Failure as `chooseStreams` does; WrongUse when the guess is not certain.
inline ChosenStream chooseStream(ZRKMetaData::MetaDataParser& parser, const std::string& file,
                                 const std::string& name, const std::string& type) {
  std::vector<std::string> types;
  if (!type.empty()) types.push_back(type);
  return chooseStreams(parser, file, {name}, types).front();
}

}  // namespace voxa
