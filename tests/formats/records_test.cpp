// Records as CSV, JSON and XML: whole documents.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "text/CsvText.h"
#include "tools/formats/CsvRecords.h"
#include "tools/formats/JsonRecords.h"
#include "tools/formats/XmlRecords.h"

namespace {

using namespace formats;

std::string noDigest(const ZRKMetaData::CursorImage& /*image*/) {
  return "digest";
}

template <class Record>
StreamLabel label(const char* stream) {
  return {"a,\"b.voxa", stream, series::recordTypeOf<Record>()};
}

// One stream of texts and one of numbers.
template <class Writer, class... Options>
std::string documentOf(Layout layout, Options... options) {
  std::string document;
  TextSink sink([&document](std::string_view text) { document += text; });
  Writer writer(sink, layout, noDigest, options...);
  writer.begin();
  writer.beginStream(label<std::string>("F9"));
  writer.add(0.1, std::string("=1\n\xFF<\x01\""));
  if (layout == Layout::Long) {
    writer.beginStream(label<double>("F2"));
    writer.add(-1, std::numeric_limits<double>::quiet_NaN());
    writer.add(1e22, -std::numeric_limits<double>::infinity());
  }
  writer.finish({{label<double>("F2"), "byte 7: <cut>"}});
  sink.flush();
  return document;
}

constexpr const char* kHeader =
    "file,stream,type,time,value,character,eventFlags,x,y,a,b,c,d,imageId,dataSize,imageInfo0,"
    "imageInfo1,sha256\n";

TEST(RecordDocuments, AreExactInEveryFormatAndLayout) {
  EXPECT_EQ(documentOf<CsvRecords>(Layout::Long, CsvCells::Exact),
            std::string(kHeader) +
                "\"a,\"\"b.voxa\",F9,strings,0.10000000000000001,\"=1\n\uFFFD<\x01\"\"\""
                ",,,,,,,,,,,,,\n"
                "\"a,\"\"b.voxa\",F2,doubles,-1,nan,,,,,,,,,,,,,\n"
                "\"a,\"\"b.voxa\",F2,doubles,1e+22,-inf,,,,,,,,,,,,,\n");
  EXPECT_EQ(documentOf<CsvRecords>(Layout::Wide, CsvCells::SpreadsheetSafe),
            "time,value\n0.10000000000000001,\"'=1\n\uFFFD<\x01\"\"\"\n");
  EXPECT_EQ(documentOf<JsonRecords>(Layout::Long, JsonRecords::Form::Lines),
            "{\"file\":\"a,\\\"b.voxa\",\"stream\":\"F9\",\"type\":\"strings\",\"time\":0.1,"
            "\"value\":\"=1\\n\uFFFD<\\u0001\\\"\"}\n"
            "{\"file\":\"a,\\\"b.voxa\",\"stream\":\"F2\",\"type\":\"doubles\",\"time\":-1,"
            "\"value\":\"NaN\"}\n"
            "{\"file\":\"a,\\\"b.voxa\",\"stream\":\"F2\",\"type\":\"doubles\",\"time\":1e+22,"
            "\"value\":\"-Infinity\"}\n");
  EXPECT_EQ(documentOf<JsonRecords>(Layout::Wide, JsonRecords::Form::Document),
            "{\"file\":\"a,\\\"b.voxa\",\"stream\":\"F9\",\"type\":\"strings\",\"records\":[\n"
            "{\"time\":0.1,\"value\":\"=1\\n\uFFFD<\\u0001\\\"\"}],\"errors\":[{\"file\":\"a,\\\"b."
            "voxa\",\"stream\":\"F2\",\"type\":\"doubles\",\"message\":\"byte 7: <cut>\"}]}\n");
  EXPECT_EQ(documentOf<XmlRecords>(Layout::Wide),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<export file=\"a,&quot;b.voxa\" stream=\"F9\" type=\"strings\">\n"
            "  <record time=\"0.1\" value=\"=1&#10;\uFFFD&lt;&quot;\"/>\n"
            "  <error file=\"a,&quot;b.voxa\" stream=\"F2\" type=\"doubles\" message=\"byte 7: "
            "&lt;cut&gt;\"/>\n</export>\n");
}

// A text of every type, whose fields stand in the columns of their names.
template <class Record>
void expectAlignedColumns(const Record& record) {
  std::string document;
  TextSink sink([&document](std::string_view text) { document += text; });
  CsvRecords writer(sink, Layout::Long, noDigest, CsvCells::Exact);
  writer.beginStream(label<Record>("F0"));
  writer.add(1, record);
  sink.flush();
  const auto columns = longColumns();
  EXPECT_EQ(static_cast<std::size_t>(std::count(document.begin(), document.end(), ',')),
            columns.size());  // one of them in the name of the file
  const series::RecordTypeInfo& info = infoOf(series::recordTypeOf<Record>());
  std::string names;
  std::size_t column = 0;
  bool isQuoted = false;
  bool isEmpty = true;
  for (const char character : document) {
    if (character == '"') isQuoted = !isQuoted;
    if (!isQuoted && (character == ',' || character == '\n')) {
      if (!isEmpty && column >= 4) names += columns[column] + " ";
      ++column;
      isEmpty = true;
    } else {
      isEmpty = false;
    }
  }
  std::string expected;
  for (const series::Field& field : info) expected += std::string(field.name) + " ";
  EXPECT_EQ(names, expected) << info.name;
}

TEST(LongColumns, HoldTheFieldsOfTheirNames) {
  series::forEachRecordType([](const auto& row, series::RecordType /*type*/) {
    using Record = typename std::decay_t<decltype(row)>::type;
    if constexpr (std::is_same_v<Record, std::string>) {
      expectAlignedColumns(Record("x"));
    } else {
      expectAlignedColumns(Record());
    }
  });
}

TEST(SpreadsheetSafety, KnowsEveryStartOfAFormula) {
  for (const char* const text :
       {"=1", "+1", "-1", "@x", "\tx", "\rx", "\nx", "\uFF1D1", "\uFF20"}) {
    EXPECT_TRUE(text::looksLikeFormula(text)) << text;
  }
  for (const char* const text : {"", "1", "a=1", " =1", "'=1", "\xFF="}) {
    EXPECT_FALSE(text::looksLikeFormula(text)) << text;
  }
}

}  // namespace
