#include "tools/voxa/Sources.h"

#include <algorithm>
#include <memory>
#include <set>

#include "tools/voxa/Masks.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/Recording.h"

namespace voxa {

using ZRKMetaData::MetaDataParser;

namespace {

using Visit = std::function<void(const IndexedSource&)>;

// The stream of "STREAM=TYPE", empty where the option is a type alone.
std::string streamOf(const std::string& type) {
  const std::size_t equals = type.find('=');
  return equals == std::string::npos ? std::string() : type.substr(0, equals);
}

class Visitor {
 public:
  Visitor(const SourceOptions& options, const Visit& visit) : m_options(options), m_visit(visit) {}

  Status run() {
    for (const std::string& file : m_options.files) {
      attempt([&] { visitFile(file); });
    }
    attempt([&] { requireUsedTypes(); });
    return m_worst;
  }

 private:
  template <class Step>
  void attempt(Step step) {
    try {
      step();
    } catch (const Failure& failure) {
      report(failure);
    }
  }

  void report(const Failure& failure) {
    if (*failure.what() != '\0') sayError(failure.what());
    m_worst = worse(m_worst, failure.status());
  }

  // The key of a stream behind the files is taken for one of them.
  std::unique_ptr<MetaDataParser> opened(const std::string& file) const {
    try {
      return openRecording(file, m_options.container);
    } catch (const Failure& failure) {
      if (!isStreamText(file)) throw;
      throw Failure(failure.status(),
                    failure.what() + ("; a stream is chosen by --streams=" + file));
    }
  }

  void visitFile(const std::string& file) {
    const auto parser = opened(file);
    m_isAnyOpen = true;
    const auto types = typesIn(*parser, file);
    std::vector<std::string> streams;
    const auto& asked = m_options.streams;
    if (std::find(asked.begin(), asked.end(), kAllStreams) == asked.end()) {
      for (const std::string& name : asked) {
        if (lookUpStream(*parser, file, name)) {
          streams.push_back(name);
        } else {
          report(noSuchStream(file, name));
        }
      }
      if (streams.empty() && !asked.empty()) return;
    }
    m_visit({file, *parser, streams, types});
  }

  std::vector<std::string> typesIn(const MetaDataParser& parser, const std::string& file) {
    std::vector<std::string> types;
    for (const std::string& type : m_options.types) {
      const std::string stream = streamOf(type);
      if (!stream.empty() && m_options.files.size() > 1) {
        if (!lookUpStream(parser, file, stream)) continue;
        m_usedTypes.insert(type);
      }
      types.push_back(type);
    }
    return types;
  }

  void requireUsedTypes() const {
    if (!m_isAnyOpen || m_options.files.size() == 1) return;
    for (const std::string& type : m_options.types) {
      if (streamOf(type).empty() || m_usedTypes.count(type) != 0) continue;
      throw Failure(Status::NoSuchStream, "--as " + type + ": no file has this stream");
    }
  }

  const SourceOptions& m_options;
  const Visit& m_visit;
  Status m_worst = Status::Done;
  bool m_isAnyOpen = false;
  std::set<std::string> m_usedTypes;
};

}  // namespace

Status forEachIndexedSource(const SourceOptions& options, const Visit& visit) {
  return Visitor(options, visit).run();
}

Status forEachSource(const SourceOptions& options,
                     const std::function<void(const Source&)>& visit) {
  return forEachIndexedSource(options, [&](const IndexedSource& source) {
    const auto streams = chooseStreams(source.parser, source.file, source.streams, source.types);
    requireMasks(source.parser, source.file, streams, options.redaction);
    visit({source.file, source.parser, streams});
  });
}

void endWith(Status status) {
  if (status != Status::Done) throw Failure(status, "");
}

}  // namespace voxa
