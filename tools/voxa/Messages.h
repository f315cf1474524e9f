// Messages on standard error, with unprintable characters escaped, and the status line below them.
//
// Used by one thread.
#pragma once

#include <iostream>
#include <streambuf>
#include <string_view>

namespace voxa {

/// Prints one line: "voxa: " and the message, escaped. For what the user must know: the result
/// lacks something.
void say(std::string_view message);

/// The same for what is only good to know. Prints nothing with --quiet.
void note(std::string_view message);

/// The same for what made the command fail.
void sayError(std::string_view message);

/// Option --quiet: no notes and no status line from now on.
void beQuiet();

/// Shows a line of ASCII or escaped text on the terminal, in place of the one shown before. The
/// next message replaces it. Does nothing where standard error is no terminal.
void showStatus(std::string_view line);

/// Removes the line.
void hideStatus();

/// Removes the line and shows no other: from now on something else is written to the terminal.
void endStatus();

/// Forwards text to another buffer, line by line and escaped (text/Printable.h).
class EscapingBuffer final : public std::streambuf {
 public:
  /// `target` must outlive the buffer.
  explicit EscapingBuffer(std::streambuf& target) : m_target(target) {}

 protected:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  int sync() override { return m_target.pubsync(); }

 private:
  std::streambuf& m_target;
};

/// While an object exists, everything written to std::cerr, also by the module, is escaped. At most
/// one object exists at a time.
class EscapedErrors {
 public:
  EscapedErrors();
  ~EscapedErrors();
  EscapedErrors(const EscapedErrors&) = delete;
  EscapedErrors& operator=(const EscapedErrors&) = delete;

 private:
  EscapingBuffer m_buffer;
  std::streambuf* const m_before;
};

}  // namespace voxa
