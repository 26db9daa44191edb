// SPDX-License-Identifier: MIT
#include "tests/document/EditJudgement.h"

#include "config/ConfigurationValue.h"
#include "config/UpperCase.h"
#include "document/PropertyKeys.h"
#include "tests/support/Files.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <vector>

using namespace std::string_view_literals;
using QvVisa::Document;
using QvVisa::EditResult;
using QvVisa::LineKind;
using QvVisa::PropertyValues;
using QvVisa::toUpperCase;

namespace {

constexpr std::string_view s_names[] = {"DMM"sv, "dmm"sv,  "Dmm"sv, "A"sv,   "a"sv,
                                        "B:1"sv, "\xE9"sv, "X"sv,   "DMM2"sv};
constexpr std::string_view s_values[] = {
    "GPIB0::1::INSTR"sv, "gpib0::1::instr"sv, "A=B"sv, "\xFF\x01"sv, "x\0y"sv, "TCPIP::h"sv};
constexpr std::string_view s_resources[] = {
    "GPIB0::1::INSTR"sv, "gpib0::1::instr"sv, "R"sv, "r "sv, "R\r"sv, "\x80\0"sv, "R # c"sv};
constexpr std::string_view s_separators[] = {"="sv, " = "sv, "\t="sv, "=\f"sv};
constexpr std::string_view s_tails[] = {""sv, ""sv, " "sv, "\r"sv, "\t\v\r"sv};
constexpr std::string_view s_devices[] = {"0"sv, "1"sv, " 2 "sv, "65537"sv, "2147483648"sv, "01"sv};
constexpr std::string_view s_numbers[] = {"0"sv,     "1"sv,     " 8 "sv,        "9600"sv,
                                          "263"sv,   "3674"sv,  "65535"sv,      "65536"sv,
                                          "00008"sv, "65537"sv, "2147483647"sv, "2147483648"sv};
constexpr std::string_view s_others[] = {""sv,
                                         "# comment"sv,
                                         "\r"sv,
                                         " DMM=1"sv,
                                         "DMM=1 2"sv,
                                         "DMM="sv,
                                         ":Provider 7"sv,
                                         "=1"sv,
                                         ":"sv,
                                         ":baud\0rate"sv,
                                         "\x00"sv,
                                         "\t"sv,
                                         "#"sv,
                                         ":QvVisaConfigurationFileVersion01"sv};
constexpr LineKind s_keys[] = {LineKind::SerialBaudrate,       LineKind::SerialDataBits,
                               LineKind::SerialStopBits,       LineKind::SerialParity,
                               LineKind::SerialFlowControl,    LineKind::GpibPrimaryAddress,
                               LineKind::GpibSecondaryAddress, LineKind::GpibSystemController};

template <typename Texts>
std::string pick(ByteSource& source, const Texts& texts)
{
    return std::string(texts[source.choose(std::size(texts))]);
}

std::string generateLine(ByteSource& source)
{
    constexpr std::size_t kinds = 6;
    switch (source.choose(kinds)) {
    case 0:
        return pick(source, s_names) + pick(source, s_separators) + pick(source, s_values) +
               pick(source, s_tails);
    case 1:
        return pick(source, s_resources);
    case 2: {
        const LineKind key = s_keys[source.choose(std::size(s_keys))];
        return (QvVisa::isSerialProperty(key) ? ":SerialProperty[DeviceNo="
                                              : ":GPIBProperty[DeviceNo=") +
               pick(source, s_devices) + "]." + std::string(QvVisa::keyInFile(key)) + "=" +
               pick(source, s_numbers) + pick(source, s_tails);
    }
    case 3:
        return (source.choose(2) == 0 ? ":Provider" : ":PROVIDER ") + std::string("=") +
               pick(source, s_numbers) + pick(source, s_tails);
    case 4:
        return pick(source, s_others);
    default: {
        // Bytes of the source's own, without a line feed.
        std::string bytes;
        for (std::size_t count = source.choose(8); count > 0; --count) {
            const char byte = static_cast<char>(source.next());
            bytes += byte == '\n' ? '=' : byte;
        }
        return bytes;
    }
    }
}

bool isListed(const std::vector<std::string>& resources, const std::string& resource)
{
    return std::any_of(resources.begin(), resources.end(), [&](const std::string& listed) {
        return QvVisa::equalsIgnoringCase(listed, resource);
    });
}

template <typename Map, typename Wanted>
void applyDevices(Map& devices, const Wanted& wanted, bool isPrune)
{
    Map result = isPrune ? Map() : devices;
    for (const auto& [device, values] : wanted) {
        auto& properties = result[device];
        for (const auto& [kind, value] : values) {
            QvVisa::setProperty(properties, {kind, device, value});
        }
    }
    devices = result;
}

/// The lines of a text, with their line feeds.
std::vector<std::string> linesOf(const Document& document)
{
    std::vector<std::string> lines;
    for (std::size_t index = 0; index < document.size(); ++index) {
        const QvVisa::DocumentLine line = document.line(index);
        lines.emplace_back(line.text);
        lines.back() += line.hasLineFeed ? "\n" : "";
    }
    return lines;
}

/// The old text with the reported hunks taken from the new one: equal to the new text only if no
/// line outside of the hunks has changed.
std::string replayed(const Document& before, const Document& after, const EditResult& result)
{
    const std::vector<std::string> oldLines = linesOf(before);
    const std::vector<std::string> newLines = linesOf(after);
    std::string text;
    std::size_t next = 0;
    const auto copyUpTo = [&](std::size_t end) {
        for (; next < end; ++next) {
            text += oldLines.at(next);
        }
    };
    for (const QvVisa::ChangedLines& hunk : result.edited.hunks) {
        copyUpTo(hunk.oldBegin);
        next += hunk.oldCount;
        for (std::size_t i = 0; i < hunk.newCount; ++i) {
            text += newLines.at(hunk.newBegin + i);
        }
    }
    copyUpTo(oldLines.size());
    return text;
}

std::size_t entryCount(const AnyEdit& edit)
{
    std::size_t count =
        edit.wanted.aliases.size() + edit.wanted.resources.size() + (edit.wanted.provider ? 1 : 0);
    for (const auto* devices : {&edit.wanted.serial, &edit.wanted.gpib}) {
        for (const auto& [device, values] : *devices) {
            count += values.size();
        }
    }
    return count;
}

/// At most one line for each entry of a set, and removals leave the rest as it was.
bool touchesTooMuch(const AnyEdit& edit, const EditResult& result)
{
    const auto& changes = result.edited.changes;
    const auto isRemoval = [](const QvVisa::LineChange& change) { return !change.after; };
    const auto isReplacement = [](const QvVisa::LineChange& change) {
        return change.before && change.after;
    };
    switch (edit.kind) {
    case AnyEdit::Kind::Set:
        return changes.size() > entryCount(edit) ||
               std::any_of(changes.begin(), changes.end(), isRemoval);
    case AnyEdit::Kind::Prune: {
        const auto removed = std::count_if(changes.begin(), changes.end(), isRemoval);
        return changes.size() - static_cast<std::size_t>(removed) > entryCount(edit);
    }
    case AnyEdit::Kind::Remove:
        return !std::all_of(changes.begin(), changes.end(), isRemoval);
    case AnyEdit::Kind::Rename:
        return !std::all_of(changes.begin(), changes.end(), isReplacement);
    }
    return true;
}

PropertyValues generateValues(ByteSource& source, bool isSerial)
{
    PropertyValues values;
    for (std::size_t count = 1 + source.choose(3); count > 0; --count) {
        const LineKind key = isSerial ? QvVisa::s_serialKeys[source.choose(5)]
                                      : QvVisa::s_gpibKeys[source.choose(3)];
        constexpr std::uint32_t numbers[] = {0, 1, 8, 9600, 65535, 7};
        values[key] =
            std::min(numbers[source.choose(std::size(numbers))], QvVisa::largestValue(key));
    }
    return values;
}

} // namespace

std::uint8_t ByteSource::next()
{
    if (m_bytes.empty()) {
        return 0;
    }
    const auto byte = static_cast<std::uint8_t>(m_bytes.front());
    m_bytes.remove_prefix(1);
    return byte;
}

std::string generateText(ByteSource& source)
{
    constexpr std::string_view headers[] = {":QvVisaConfigurationFileVersion01"sv,
                                            ":QvVisaConfigurationFileVersion01\r"sv,
                                            ":QvVisaConfigurationFileVersion01 text"sv};
    std::string text = pick(source, headers) + '\n';
    const bool isCrLf = source.choose(3) == 0;
    for (std::size_t count = source.choose(12); count > 0; --count) {
        text += generateLine(source);
        text += isCrLf && source.choose(4) != 0 ? "\r\n" : "\n";
    }
    if (source.choose(3) == 0) {
        text.pop_back();
    }
    return text;
}

AnyEdit generateEdit(ByteSource& source)
{
    AnyEdit edit;
    edit.kind = static_cast<AnyEdit::Kind>(source.choose(4));
    edit.oldName = pick(source, s_names);
    edit.newName = pick(source, s_names);
    for (std::size_t count = source.choose(3); count > 0; --count) {
        std::string name = pick(source, s_names);
        std::string value = pick(source, s_values);
        edit.unwanted.names.push_back(name);
        edit.wanted.aliases.emplace_back(std::move(name), std::move(value));
    }
    for (std::size_t count = source.choose(3); count > 0; --count) {
        edit.wanted.resources.push_back(pick(source, s_resources));
        edit.unwanted.resources.push_back(pick(source, s_resources));
    }
    for (std::size_t count = source.choose(3); count > 0; --count) {
        const auto device = static_cast<std::uint16_t>(source.choose(4));
        const bool isSerial = source.choose(2) == 0;
        (isSerial ? edit.wanted.serial : edit.wanted.gpib)[device] =
            generateValues(source, isSerial);
        (isSerial ? edit.unwanted.serial : edit.unwanted.gpib).push_back(device);
    }
    if (source.choose(3) == 0) {
        constexpr std::uint16_t providers[] = {3674, 0, 1, 65535};
        edit.wanted.provider = providers[source.choose(std::size(providers))];
    }
    return edit;
}

EditResult AnyEdit::apply(const Document& document) const
{
    EditResult result;
    switch (kind) {
    case Kind::Set:
        return setEntries(document, wanted);
    case Kind::Prune:
        return setEntries(document, wanted, QvVisa::OtherEntries::Remove);
    case Kind::Remove:
        return removeEntries(document, unwanted);
    case Kind::Rename:
        if (renameAlias(document, oldName, newName, result) != QvVisa::Renaming::Done) {
            result.edited = QvVisa::DocumentEditor(document).edit();
        }
        return result;
    }
    return result;
}

FileContents AnyEdit::applied(FileContents contents) const
{
    if (kind == Kind::Rename) {
        const auto found = contents.aliases.find(toUpperCase(oldName));
        if (found != contents.aliases.end() && contents.aliases.count(toUpperCase(newName)) == 0) {
            contents.aliases[toUpperCase(newName)] = found->second;
            contents.aliases.erase(toUpperCase(oldName));
        }
        return contents;
    }
    if (kind == Kind::Remove) {
        for (const std::string& name : unwanted.names) {
            contents.aliases.erase(toUpperCase(name));
        }
        auto& resources = contents.resources;
        resources.erase(std::remove_if(resources.begin(), resources.end(),
                                       [this](const std::string& resource) {
                                           return isListed(unwanted.resources, resource);
                                       }),
                        resources.end());
        for (const std::uint16_t port : unwanted.serial) {
            contents.serial.erase(port);
        }
        for (const std::uint16_t board : unwanted.gpib) {
            contents.gpib.erase(board);
        }
        return contents;
    }
    const bool isPrune = kind == Kind::Prune;
    FileContents result = contents;
    if (isPrune) {
        result.aliases.clear();
        result.resources.clear();
        result.provider = FileContents().provider;
        std::copy_if(contents.resources.begin(), contents.resources.end(),
                     std::back_inserter(result.resources), [this](const std::string& resource) {
                         return isListed(wanted.resources, resource);
                     });
    }
    for (const auto& [name, resource] : wanted.aliases) {
        result.aliases[toUpperCase(name)] = resource;
    }
    for (const std::string& resource : wanted.resources) {
        if (!isListed(result.resources, resource)) {
            result.resources.push_back(resource);
        }
    }
    applyDevices(result.serial, wanted.serial, isPrune);
    applyDevices(result.gpib, wanted.gpib, isPrune);
    result.provider = wanted.provider.value_or(result.provider);
    return result;
}

std::string judgeEdit(const std::string& text, const AnyEdit& edit, const std::string& path)
{
    const auto read = [&path](const std::string& bytes) {
        support::writeFile(path, bytes);
        return readWithModernConfigurationFile(path);
    };
    const Document before(text);
    const EditResult result = edit.apply(before);
    const Document after(result.edited.text);
    const FileContents contents = read(text);
    const FileContents expected = edit.applied(contents);
    const FileContents actual = read(result.edited.text);
    std::ostringstream wrong;
    if (!(actual == expected)) {
        wrong << "another meaning:\n" << actual << "expected:\n" << expected;
    }
    if (result.isChanged() != (text != result.edited.text)) {
        wrong << "the change is not reported as one\n";
    }
    if (result.isChanged() && contents == expected) {
        wrong << "written without a change of meaning\n";
    }
    if (edit.apply(after).isChanged()) {
        wrong << "the second edit changes the text again\n";
    }
    if (replayed(before, after, result) != result.edited.text) {
        wrong << "a line changed that is not reported\n";
    }
    if (touchesTooMuch(edit, result)) {
        wrong << "more lines changed than entries\n";
    }
    if (wrong.str().empty()) {
        return {};
    }
    return wrong.str() + "kind " + std::to_string(static_cast<int>(edit.kind)) + ", old text:\n" +
           text + "\nnew text:\n" + result.edited.text;
}
