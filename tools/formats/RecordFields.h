// The common base of the writers of records as CSV, JSON and XML (docs/export.md).
//
// A writer is used in this order: `begin`, any number of streams, each `beginStream` and `add` for
// each record, and `finish`. In the long layout, one document has the records of all streams, and
// each row names its own. In the wide layout, each stream is a document with a writer of its own.
// Memory does not grow with the number of records. Used by one thread.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tools/formats/TextSink.h"
#include "tools/series/RecordTypes.h"

namespace formats {

enum class Layout { Long, Wide };

/// Which stream rows belong to.
struct StreamLabel {
  std::string file;    ///< as the user names it
  std::string stream;  ///< its short key, or its identifier
  series::RecordType type;
};

/// Why the records of a stream end early.
struct StreamError {
  StreamLabel stream;
  std::string message;
};

/// Returns the text that stands for the bytes of an image.
using ImageDigest = std::function<std::string(const ZRKMetaData::CursorImage&)>;

/// The names of the label's columns, in the order of `labelValues`.
constexpr const char* kLabelColumns[] = {"file", "stream", "type"};

inline std::array<std::string, 3> labelValues(const StreamLabel& stream) {
  return {stream.file, stream.stream, infoOf(stream.type).name};
}

/// What a writer and series::describe agree on: every field of a record is a column of its own.
/// `Writer` derives from it and has `field(name, value)` for numbers and texts.
template <class Writer>
class RecordFields {
 public:
  template <class Number, std::size_t count>
  void numbers(const char* /*name*/, const char* const (&names)[count],
               const Number (&values)[count]) {
    for (std::size_t i = 0; i < count; ++i) writer().field(names[i], values[i]);
  }

  void image(const char* name, const ZRKMetaData::CursorImage& image) {
    writer().field(name, m_digest(image));
  }

 protected:
  /// `out` must outlive the writer.
  RecordFields(TextSink& out, Layout layout, ImageDigest digest)
      : m_out(out), m_layout(layout), m_digest(std::move(digest)) {}

  TextSink& m_out;
  const Layout m_layout;

 private:
  Writer& writer() { return static_cast<Writer&>(*this); }

  const ImageDigest m_digest;
};

}  // namespace formats
