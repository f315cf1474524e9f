#include "tools/voxa/Output.h"

#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>

#include "text/CsvText.h"
#include "text/JsonText.h"
#include "text/Printable.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/Terminal.h"

namespace voxa {

Output::Output(const Destination& destination) {
  if (destination.file == "-") return;
  m_file = std::make_unique<files::OutputFile>(
      destination.file, destination.force ? files::Existing::Replace : files::Existing::Refuse);
}

Output::~Output() {
  if (m_file) return;
  // The result of a failed command so far is still written. `flush` has reported any error.
  std::fwrite(m_buffer.data(), 1, m_buffer.size(), stdout);
}

void Output::flush() {
  if (m_file) {
    m_file->write({m_buffer.data(), m_buffer.size()});
    m_buffer.clear();
    return;
  }
  if (connectionOf(StandardStream::Out) != Connection::File) endStatus();  // it may be in the way
  const bool isWritten =
      std::fwrite(m_buffer.data(), 1, m_buffer.size(), stdout) == m_buffer.size() &&
      std::fflush(stdout) == 0;
  m_buffer.clear();
  if (!isWritten) {
    throw std::runtime_error("standard output: cannot write: " +
                             std::generic_category().message(errno));
  }
}

void Output::finish() {
  flush();
  if (m_file) m_file->commit();
}

void Output::writePrintable(std::string_view text) {
  text::forEachPiece<text::PrintableRule>(text, [this](std::string_view piece) { write(piece); });
}

void Output::writeCsvField(std::string_view text) {
  const bool isQuoted = text::needsCsvQuotes(text);
  if (isQuoted) write("\"");
  text::forEachPiece<text::CsvRule>(text, [this](std::string_view piece) { write(piece); });
  if (isQuoted) write("\"");
}

void Output::writeJsonString(std::string_view text) {
  write("\"");
  text::forEachPiece<text::JsonRule>(text, [this](std::string_view piece) { write(piece); });
  write("\"");
}

}  // namespace voxa
