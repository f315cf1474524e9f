#include "tools/voxa/NamedTypes.h"

#include "tools/voxa/Failure.h"
#include "tools/voxa/Recording.h"

namespace voxa {

namespace {

series::RecordType typeNamed(const std::string& name) {
  if (const auto type = series::recordTypeNamed(name)) return *type;
  std::string names;
  for (const auto& info : series::kRecordTypeInfos) names += std::string(" ") + info.name;
  throw Failure(Status::WrongUse, "unknown record type '" + name + "'; use one of" + names);
}

}  // namespace

series::NamedTypes namedTypes(const ZRKMetaData::MetaDataParser& parser, const std::string& file,
                              const std::vector<std::string>& options) {
  series::NamedTypes types;
  for (const std::string& option : options) {
    const std::size_t equals = option.find('=');
    if (equals == std::string::npos) continue;
    types[findStream(parser, file, option.substr(0, equals))] =
        typeNamed(option.substr(equals + 1));
  }
  for (const std::string& option : options) {
    if (option.find('=') != std::string::npos) continue;
    for (const auto& stream : parser.locations()) types.emplace(stream.first, typeNamed(option));
  }
  return types;
}

}  // namespace voxa
