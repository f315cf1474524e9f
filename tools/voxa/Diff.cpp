#include "tools/series/Diff.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/uuid/uuid_io.hpp>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "text/Printable.h"
#include "tools/series/EntryExtent.h"
#include "tools/series/Guess.h"
#include "tools/series/RecordDiff.h"
#include "tools/series/RecordStream.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Masks.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/NamedTypes.h"
#include "tools/voxa/Numbers.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"
#include "tools/voxa/Sha256.h"
#include "tools/voxa/StreamChoice.h"
#include "tools/voxa/StreamNames.h"

namespace voxa {

using boost::uuids::uuid;
using series::DiffEdit;
using series::DiffSide;
using series::RecordType;
using ZRKMetaData::int64;
using ZRKMetaData::MetaDataHeader;

namespace {

struct DiffFile {
  DiffFile(const std::string& name, const DiffOptions& options)
      : file(name),
        parser(openScanned(file, options.container)),
        named(namedTypes(*parser, file, options.types)) {}

  bool has(const uuid& id) const { return parser->locations().count(id) != 0; }

  const std::string& file;
  std::unique_ptr<ZRKMetaData::MetaDataParser> parser;
  series::NamedTypes named;
  std::vector<std::string> damages;  // of each damaged stream
};

// The fields of a record as text for a table: "x 1, y 2".
class FieldsText {
 public:
  template <class Value>
  void field(const char* name, const Value& value) {
    if constexpr (std::is_arithmetic_v<Value>) {
      add(name, exactText(value));
    } else {
      add(name, '"' + text::printable(withEscapedQuotes(value)) + '"');
    }
  }

  template <class Number, std::size_t count>
  void numbers(const char* /*name*/, const char* const (&names)[count],
               const Number (&values)[count]) {
    for (std::size_t i = 0; i < count; ++i) field(names[i], values[i]);
  }

  void image(const char* name, const ZRKMetaData::CursorImage& image) {
    if (image.m_data) add(name, voxa::digestOf(image));
  }

  const std::string& text() const { return m_text; }

 private:
  static std::string withEscapedQuotes(const std::string& text) {
    std::string escaped;
    for (const char character : text) {
      if (character == '"' || character == '\\') escaped += '\\';
      escaped += character;
    }
    return escaped;
  }

  void add(const char* name, const std::string& value) {
    if (!m_text.empty()) m_text += ", ";
    m_text += std::string(name) + " " + value;
  }

  std::string m_text;
};

const char* nameOf(DiffEdit::Kind kind) {
  switch (kind) {
    case DiffEdit::Kind::Added:
      return "added";
    case DiffEdit::Kind::Removed:
      return "removed";
    case DiffEdit::Kind::Changed:
      break;
  }
  return "changed";
}

struct Counts {
  std::size_t added = 0;
  std::size_t removed = 0;
  std::size_t changed = 0;
};

Counts countsOf(const std::vector<DiffEdit>& edits) {
  const auto count = [&edits](DiffEdit::Kind kind) {
    return static_cast<std::size_t>(std::count_if(
        edits.begin(), edits.end(), [kind](const DiffEdit& edit) { return edit.kind == kind; }));
  };
  return {count(DiffEdit::Kind::Added), count(DiffEdit::Kind::Removed),
          count(DiffEdit::Kind::Changed)};
}

class RecordingDiff {
 public:
  explicit RecordingDiff(const DiffOptions& options)
      : m_options(options), m_before(options.before, options), m_after(options.after, options) {}

  // Returns the exit status.
  Status print() {
    if (isJson()) {
      m_out.write("{\"before\":");
      m_out.writeJsonString(m_options.before);
      m_out.write(",\"after\":");
      m_out.writeJsonString(m_options.after);
      m_out.write(",\"streams\":[");
    }
    std::set<uuid> ids;
    for (const auto& stream : m_before.parser->locations()) ids.insert(stream.first);
    for (const auto& stream : m_after.parser->locations()) ids.insert(stream.first);
    const std::vector<uuid> all(ids.begin(), ids.end());
    const Progress progress(m_options.after,
                            bytesOf(*m_before.parser, all) + bytesOf(*m_after.parser, all));
    StreamNames names;
    for (const uuid& id : ids) names.add(id);
    for (const uuid& id : ids) {
      m_name = names.of(id);
      compare(id);
    }
    if (isJson()) m_out.write(m_isEqual ? "],\"equal\":true}\n" : "],\"equal\":false}\n");
    m_out.finish();
    if (!m_isEqual) m_status = worse(m_status, Status::Different);
    for (const DiffFile* const source : {&m_before, &m_after}) {
      for (const std::string& damage : source->damages) {
        sayError(damage + "; the records before were compared");
        m_status = worse(m_status, Status::DamagedData);
      }
    }
    return m_status;
  }

 private:
  bool isJson() const { return m_options.format == Format::Json; }

  // Nothing where the type is not certain, or the stream is empty or not there.
  static std::optional<RecordType> typeOf(DiffFile& source, const uuid& id) {
    const auto named = source.named.find(id);
    if (named != source.named.end()) return named->second;
    if (!source.has(id)) return std::nullopt;
    const QuietModule quiet;
    const series::Guess guess = series::guessRecordType(*source.parser, id);
    return guess.isEmpty ? std::nullopt : guess.certainType();
  }

  void compare(const uuid& id) {
    bool isRefused = false;
    for (DiffFile* const source : {&m_before, &m_after}) {
      if (sayRefusedVersion(*source->parser, source->file, id, m_name)) isRefused = true;
    }
    if (isRefused) {
      compareBytes(id);
      return;
    }
    const auto before = typeOf(m_before, id);
    const auto after = typeOf(m_after, id);
    if (before && after && *before != *after) {
      say(fmt::format("{0} holds {1} in {2} and {3} in {4}; use --as {0}=TYPE", m_name,
                      series::infoOf(*before).name, m_options.before, series::infoOf(*after).name,
                      m_options.after));
      compareBytes(id);
      return;
    }
    if (!before && !after) {
      if (compareBytes(id)) {
        say(fmt::format("{0} differs, but its record type is not certain; use --as {0}=TYPE",
                        m_name));
      }
      return;
    }
    const RecordType type = before ? *before : *after;
    if (!hasMasks(id, type)) {
      compareBytes(id);
      return;
    }
    series::visitRecordType(type, [&](const auto& row) {
      compareRecords<typename std::decay_t<decltype(row)>::type>(id, row);
    });
  }

  // Whether the stream may be read as `type`; says so where it may not.
  bool hasMasks(const uuid& id, RecordType type) {
    try {
      for (const DiffFile* const source : {&m_before, &m_after}) {
        if (!source->has(id)) continue;
        requireMasks(*source->parser, source->file, {{id, m_name, type}}, m_options.redaction);
      }
    } catch (const Failure& failure) {
      sayError(failure.what());
      m_status = worse(m_status, failure.status());
      return false;
    }
    return true;
  }

  // Streams whose records cannot be compared: there are none, or they are of a type that is not
  // certain or not the same. Returns whether both recordings have the stream, and it differs.
  bool compareBytes(const uuid& id) {
    const bool isInBoth = m_before.has(id) && m_after.has(id);
    const bool differs =
        digestOf(m_before, id) != digestOf(m_after, id) ||
        series::refusedVersion(*m_before.parser, id) != series::refusedVersion(*m_after.parser, id);
    if (differs || !isInBoth) m_isEqual = false;
    if (isJson()) {
      beginRow();
      JsonRow row(m_out);
      describeStream(row, id, "unknown");
      row.field("differs", differs || !isInBoth);
      row.end();
    } else if (differs || !isInBoth) {
      m_out.write(m_name + " unknown: ");
      if (isInBoth) m_out.write("differs");
      writeOnlyIn(id, "only in ");
      m_out.write("\n");
    }
    return differs && isInBoth;
  }

  // Of the records; that of no records where the stream is not there.
  static std::string digestOf(DiffFile& source, const uuid& id) {
    Sha256 digest;
    if (source.has(id)) {
      auto extent = series::entryExtent(*source.parser, source.parser->locationOf(id));
      extent.offset += MetaDataHeader::kByteCount;
      extent.present = std::max<int64>(extent.present - MetaDataHeader::kByteCount, 0);
      series::readEntry(*source.parser, extent,
                        [&digest](std::string_view piece) { digest.add(piece); });
    }
    return digest.finish();
  }

  template <class Record>
  static DiffSide read(DiffFile& source, const uuid& id, series::DiffRecords<Record>& records) {
    const QuietModule quiet;
    try {
      series::forEachRecord<Record>(
          *source.parser, id, {},
          [&records](double seconds, const Record& record) { records.add(seconds, record); });
    } catch (const series::DamagedStream& damage) {
      source.damages.push_back(damage.message(source.file));
    }
    return records.finish();
  }

  template <class Record>
  void compareRecords(const uuid& id, const series::RecordTypeInfo& type) {
    series::DiffRecords<Record> before;
    series::DiffRecords<Record> after;
    const DiffSide beforeSide = read(m_before, id, before);
    const DiffSide afterSide = read(m_after, id, after);
    series::DiffOptions options{0, m_options.tolerance};
    std::optional<double> offset;
    if (m_options.aligns) {
      // Times that were shifted are rounded.
      constexpr double kRounding = 1e-6;
      options.tolerance = std::max(options.tolerance, kRounding);
      offset = series::bestOffset(beforeSide, afterSide, 2 * options.tolerance);
      options.offset = offset.value_or(0);
    }
    const auto edits = series::diffRecords(
        beforeSide, afterSide, options, [&](std::size_t left, std::size_t right) {
          return series::isSameRecord(before.record(left), after.record(right));
        });
    writeStream(id, type.name, offset, edits, [&](const DiffEdit& edit) {
      const bool isThere = edit.kind != DiffEdit::Kind::Added;
      const bool isHere = edit.kind != DiffEdit::Kind::Removed;
      if (isJson()) {
        JsonRow row(m_out);
        row.field("change", std::string(nameOf(edit.kind)));
        if (isThere) describeEdit(row, "before", before, edit.before);
        if (isHere) describeEdit(row, "after", after, edit.after);
        row.end();
        return;
      }
      if (isThere) writeLine("-", before, edit.before);
      if (isHere) writeLine("+", after, edit.after);
    });
  }

  template <class Record>
  void describeEdit(JsonRow& row, const char* name, const series::DiffRecords<Record>& records,
                    std::size_t index) {
    row.object(name, [&](auto& fields) {
      series::describeTimed(fields, records.seconds(index),
                            series::redacted(records.record(index), m_options.redaction));
    });
  }

  template <class Record>
  void writeLine(const char* sign, const series::DiffRecords<Record>& records, std::size_t index) {
    FieldsText fields;
    series::describe(fields, series::redacted(records.record(index), m_options.redaction));
    m_out.write(
        fmt::format("  {} {:>12}  {}\n", sign, exactText(records.seconds(index)), fields.text()));
  }

  template <class WriteEdit>
  void writeStream(const uuid& id, const char* type, std::optional<double> offset,
                   const std::vector<DiffEdit>& edits, WriteEdit writeEdit) {
    const Counts counts = countsOf(edits);
    const bool isInBoth = m_before.has(id) && m_after.has(id);
    if (!edits.empty() || !isInBoth) m_isEqual = false;
    if (isJson()) {
      beginRow();
      JsonRow row(m_out);
      describeStream(row, id, type);
      if (offset) row.field("offset", *offset);
      row.field("added", counts.added);
      row.field("removed", counts.removed);
      row.field("changed", counts.changed);
      row.array("changes", edits, writeEdit);
      row.end();
      return;
    }
    if (edits.empty() && isInBoth && offset.value_or(0) == 0) return;
    m_out.write(fmt::format("{} {}: {} added, {} removed, {} changed", m_name, type, counts.added,
                            counts.removed, counts.changed));
    if (offset && *offset != 0) m_out.write(fmt::format(", {} s later", exactText(*offset)));
    writeOnlyIn(id, ", only in ");
    m_out.write("\n");
    for (const DiffEdit& edit : edits) writeEdit(edit);
  }

  void beginRow() {
    m_out.write(m_isFirst ? "\n" : ",\n");
    m_isFirst = false;
  }

  void describeStream(JsonRow& row, const uuid& id, const char* type) const {
    const bool isInBoth = m_before.has(id) && m_after.has(id);
    row.field("id", boost::uuids::to_string(id));
    row.field("key", ZRKMetaData::MetaDataUUID::shortKey(id));
    row.field("type", std::string(type));
    row.field("in", std::string(isInBoth ? "both" : m_before.has(id) ? "before" : "after"));
  }

  // Of a table, for a stream that one recording has.
  void writeOnlyIn(const uuid& id, const char* words) {
    if (m_before.has(id) && m_after.has(id)) return;
    m_out.write(words);
    m_out.writePrintable(m_before.has(id) ? m_options.before : m_options.after);
  }

  const DiffOptions& m_options;
  DiffFile m_before;
  DiffFile m_after;
  Output m_out;
  std::string m_name;  // of the present stream
  bool m_isEqual = true;
  Status m_status = Status::Done;
  bool m_isFirst = true;
};

}  // namespace

void showDiff(const DiffOptions& options) {
  const Status status = RecordingDiff(options).print();
  if (status != Status::Done) throw Failure(status, "");
}

}  // namespace voxa
