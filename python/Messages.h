// Collects what the parser and the module report while they read, so that it becomes Python
// warnings instead of text in the output of a script.
#pragma once

#include <string>

namespace python {

/// Collects the messages of the calling thread while it exists. Threads do not affect each other.
/// Objects on one thread may nest; the innermost collects.
class CollectedMessages {
 public:
  CollectedMessages();
  ~CollectedMessages();
  CollectedMessages(const CollectedMessages&) = delete;
  CollectedMessages& operator=(const CollectedMessages&) = delete;

  void add(const char* text, std::size_t size) { m_text.append(text, size); }

  /// Issues one RuntimeWarning per line collected so far and its repetitions, behind `place`: the
  /// file, and the stream that was read. Requires: the GIL is held. Throws
  /// pybind11::error_already_set where the warning filter makes an error of it.
  void warn(const std::string& place);

 private:
  CollectedMessages* const m_before;
  std::string m_text;
};

/// Directs messages to the collecting objects, for the rest of the process. What other code writes
/// to std::cout and std::cerr is unaffected. Called once, when the extension is imported.
void installMessageCollection();

}  // namespace python
