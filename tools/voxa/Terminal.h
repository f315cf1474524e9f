// Reports what the standard streams of the program are connected to. The part that differs between
// platforms: TerminalPosix.cpp, TerminalWindows.cpp.
#pragma once

namespace voxa {

enum class StandardStream { Out, Error };

enum class Connection { Terminal, File, Other };

/// Never fails: what cannot be found out is Other.
Connection connectionOf(StandardStream stream);

/// Whether the stream is a terminal that knows escape sequences for colours. On Windows, switches
/// them on.
bool knowsColors(StandardStream stream);

/// `knowsColors`, unless the environment variable NO_COLOR has a value.
bool usesColors(StandardStream stream);

}  // namespace voxa
