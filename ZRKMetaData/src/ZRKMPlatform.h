// The two things that the parser asks of the operating system. Each platform answers in a file of
// its own: ZRKMPlatformPosix.cpp, ZRKMPlatformWindows.cpp.
#pragma once

#include <fstream>
#include <string>

namespace ZRKMetaData {

/// Opens `file` for binary reading by its UTF-8 name. Only what can be read from and sought in is
/// opened: a directory, a pipe or a name that leads nowhere leaves `file` closed.
void openForReading(std::ifstream& file, const std::string& name);

/// Where an assertion report goes when the program has set no handler.
void writeAssertionReport(const char* expression, const char* unit, int line);

}  // namespace ZRKMetaData
