// Opens the recording that a command reads, and finds streams in it.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "tools/voxa/Failure.h"

namespace voxa {

/// Throws Failure (CannotOpen), with the reason, when the file with this UTF-8 name cannot be
/// opened.
void requireOpens(const std::string& file);

/// Throws Failure when `out`, the file that a command writes, is the file `source` that it reads.
/// Neither needs to exist.
void requireOtherFile(const std::string& out, const std::string& source);

/// Throws Failure (WrongUse), which advises --container, when the extension of `file` names no
/// container.
void requireContainer(const std::string& file);

/// `kind` where the extension of `file` names no container, for a command that reads several files.
std::optional<ZRKMetaData::ContainerKind> kindOfOther(
    const std::string& file, std::optional<ZRKMetaData::ContainerKind> kind);

/// Opens and indexes the recording with this UTF-8 name, as `kind` where that is given. When the
/// extension is unknown, nothing is scanned and a message on standard error says so. Throws as
/// `requireOpens` does.
std::unique_ptr<ZRKMetaData::MetaDataParser> openRecording(
    const std::string& file, std::optional<ZRKMetaData::ContainerKind> kind);

/// The same for a command to which a file that is not scanned must not look empty: without `kind`
/// it throws as `requireContainer` does.
std::unique_ptr<ZRKMetaData::MetaDataParser> openScanned(
    const std::string& file, std::optional<ZRKMetaData::ContainerKind> kind);

/// What happens to the parser's own messages about a file. They are dropped where the module scans
/// the file again, because it prints the same ones.
enum class ScanMessages { Printed, Dropped };

/// Opens and indexes as `openRecording` does, for a command that passes the name to the module. The
/// module goes by the extension alone, so there is no `kind`. Also throws Failure for a name that
/// is not UTF-8, because the module refuses it.
std::unique_ptr<ZRKMetaData::MetaDataParser> openForModule(const std::string& file,
                                                           ScanMessages messages);

/// Prints the messages that `openForModule` dropped, for a command that fails before the module
/// scans the file. Scans the file again, because there may be millions of messages.
void printDroppedMessages(const std::string& file);

/// Whether `text` has the form of a stream: an identifier of 36 characters or the two digits of a
/// short key.
bool isStreamText(const std::string& text);

/// Returns the identifier that `text` names in this recording, or nothing when it is not indexed.
/// `text` is an identifier of 36 characters or the two digits of a short key; of several indexed
/// identifiers with one key, it names the registered one. Throws Failure (WrongUse) when `text` is
/// neither form, or is a key of several unregistered identifiers, which the message lists.
std::optional<boost::uuids::uuid> lookUpStream(const ZRKMetaData::MetaDataParser& parser,
                                               const std::string& file, const std::string& text);

/// The failure of a command whose stream `text` is not indexed.
Failure noSuchStream(const std::string& file, const std::string& text);

/// The same as `lookUpStream`, but throws `noSuchStream` when the stream is not indexed.
boost::uuids::uuid findStream(const ZRKMetaData::MetaDataParser& parser, const std::string& file,
                              const std::string& text);

/// The streams that `names` means (as in `findStream`), each once, or all where it is empty.
std::vector<boost::uuids::uuid> streamsNamed(const ZRKMetaData::MetaDataParser& parser,
                                             const std::string& file,
                                             const std::vector<std::string>& names);

}  // namespace voxa
