// The two services that the parser needs from the operating system. Each platform implements them
// in a file of its own: ZRKMPlatformPosix.cpp, ZRKMPlatformWindows.cpp.
#pragma once

#include <fstream>
#include <string>

namespace ZRKMetaData {

/// Opens `file` for binary reading by its UTF-8 name. A directory, a pipe or a name without a file
/// leaves `file` closed, because a recording must be seekable.
void openForReading(std::ifstream& file, const std::string& name);

/// The default assertion handler: writes one line to standard error.
void writeAssertionReport(const char* expression, const char* unit, int line);

}  // namespace ZRKMetaData
