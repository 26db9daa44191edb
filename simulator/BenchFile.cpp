// SPDX-License-Identifier: MIT
#include "simulator/BenchFile.h"

#include "simulator/StatusNames.h"
#include "visa/ResourceName.h"
#include "visa/Text.h"

#include <array>
#include <cstdio>
#include <memory>
#include <utility>

namespace simulator {

namespace {

using Word = BenchLine::Word;
using Words = std::vector<Word>;

std::string quoted(const std::string& text)
{
    return '"' + text + '"';
}

[[noreturn]] void fail(const std::string& setting, const std::string& text)
{
    throw BenchLineError(setting + ": " + text);
}

/// The word behind the setting's name that stands at this place.
const std::string& required(const Words& words, std::size_t place, const char* what)
{
    if (words.size() <= place) {
        fail(words.front().text, std::string(what) + " is missing");
    }
    return words[place].text;
}

std::uint32_t number(const std::string& setting, const std::string& text, std::uint32_t least,
                     std::uint32_t most)
{
    const auto value = visa::parseNumber(text, most);
    if (!value || *value < least) {
        fail(setting, quoted(text) + " is not a number from " + std::to_string(least) + " to " +
                          std::to_string(most));
    }
    return static_cast<std::uint32_t>(*value);
}

[[noreturn]] void failUnknown(const Words& words, const Word& option)
{
    fail(words.front().text, "unknown option " + quoted(option.text));
}

bool isOption(const Word& word, std::string_view name)
{
    return word.hasValue && word.name == name;
}

/// The for=EXPRESSION that may end a setting of the search; it stands at this place.
std::string expressionOption(const Words& words, std::size_t place)
{
    if (place == words.size()) {
        return {};
    }
    if (!isOption(words[place], "for")) {
        failUnknown(words, words[place]);
    }
    if (place + 1 < words.size()) {
        failUnknown(words, words[place + 1]);
    }
    return words[place].value;
}

BenchResource::Interface interfaceOption(const std::string& setting, const std::string& value)
{
    const std::size_t comma = value.find(',');
    const auto type = visa::interfaceTypeFromText(value.substr(0, comma));
    const auto board = comma == std::string::npos
                           ? std::nullopt
                           : visa::parseNumber(value.substr(comma + 1), 0xFFFF);
    if (!type || !board) {
        fail(setting, "interface=TYPE,NUMBER takes a type such as ASRL or 4 and a number from 0 to "
                      "65535, not " +
                          quoted(value));
    }
    return {*type, static_cast<ViUInt16>(*board)};
}

void checkLength(const std::string& setting, const BenchResource& resource)
{
    const std::size_t most = VI_FIND_BUFLEN - (resource.hasEnd ? 1U : 0U);
    const std::size_t length = resource.numbered(resource.size()).size();
    if (length > most) {
        fail(setting, "a description has " + std::to_string(most) + " characters at most, not " +
                          std::to_string(length));
    }
}

Call knownCall(const std::string& setting, const std::string& text)
{
    const std::optional<Call> call = callFromText(text);
    if (!call) {
        fail(setting, "there is no call " + quoted(text));
    }
    return *call;
}

/// The at=N and for=EXPRESSION that say which of its calls a setting means.
template <typename CallSetting>
void readWhichCall(const Words& words, const Word& word, CallSetting& setting)
{
    // The bench is read anew at each viOpenDefaultRM, which so is always the first.
    if (isOption(word, "at") && setting.call != Call::OpenDefaultRM) {
        setting.at = number(words.front().text + ": at", word.value, 1, 0xFFFFFFFF);
    } else if (isOption(word, "for") && setting.call == Call::FindRsrc) {
        setting.expression = word.value;
    } else {
        failUnknown(words, word);
    }
}

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

} // namespace

BenchFile BenchFile::read(const std::string& path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                               &std::fclose);
    std::string text;
    std::array<char, 65536> block{};
    std::size_t length = 0;
    while (file != nullptr &&
           (length = std::fread(block.data(), 1, block.size(), file.get())) > 0) {
        text.append(block.data(), length);
    }
    // A folder opens, and fails only when it is read.
    if (file == nullptr || std::ferror(file.get()) != 0) {
        BenchFile nothing;
        nothing.m_messages.push_back({0, "the bench cannot be read; it counts as empty"});
        return nothing;
    }
    return parse(text, folderOf(path));
}

BenchFile BenchFile::parse(std::string_view text, const std::string& folder)
{
    BenchFile file;
    file.m_folder = folder;
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, byteOrderMark.size()) == byteOrderMark) {
        text.remove_prefix(byteOrderMark.size());
    }
    for (std::size_t line = 1; !text.empty(); ++line) {
        const std::size_t end = text.find('\n');
        try {
            file.readLine(text.substr(0, end));
        } catch (const BenchLineError& error) {
            file.m_messages.push_back({line, error.what()});
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return file;
}

void BenchFile::readLine(std::string_view line)
{
    struct Setting
    {
        std::string_view name;
        void (BenchFile::*read)(const Words&);
    };
    static constexpr Setting settings[] = {
        {"resource", &BenchFile::readResource},
        {"status", &BenchFile::readStatus},
        {"count", &BenchFile::readCount},
        {"scan-time", &BenchFile::readScanTime},
        {"wait-for-file", &BenchFile::readWaitForFile},
    };
    const BenchLine split(line);
    if (split.words().empty()) {
        return;
    }
    const std::string& name = split.words().front().text;
    for (const Setting& setting : settings) {
        if (name == setting.name) {
            (this->*setting.read)(split.words());
            return;
        }
    }
    throw BenchLineError("unknown setting " + quoted(name));
}

void BenchFile::readResource(const Words& words)
{
    const std::string& setting = words.front().text;
    BenchResource resource;
    resource.description = required(words, 1, "the description");
    for (std::size_t i = 2; i < words.size(); ++i) {
        const Word& word = words[i];
        if (isOption(word, "interface")) {
            resource.interface = interfaceOption(setting, word.value);
        } else if (isOption(word, "idn")) {
            resource.identification = word.value;
        } else if (isOption(word, "repeat")) {
            resource.repeat = number("resource: repeat", word.value, 1, maximumRepeat);
        } else if (word.text == "no-end") {
            resource.hasEnd = false;
        } else {
            failUnknown(words, word);
        }
    }
    checkLength(setting, resource);
    m_bench.addResource(std::move(resource));
}

void BenchFile::readStatus(const Words& words)
{
    const std::string& setting = words.front().text;
    const Call call = knownCall(setting, required(words, 1, "the call"));
    const std::string& statusText = required(words, 2, "the status");
    const std::optional<ViStatus> status = statusFromText(statusText);
    if (!status) {
        fail(setting, quoted(statusText) + " is neither the name of a status nor a number");
    }
    Bench::CallStatus rule{call, *status, 0, {}};
    for (std::size_t i = 3; i < words.size(); ++i) {
        readWhichCall(words, words[i], rule);
    }
    m_bench.addStatus(std::move(rule));
}

void BenchFile::readCount(const Words& words)
{
    const std::string& text = required(words, 1, "the number");
    m_bench.addCount({number(words.front().text, text, 0, 0xFFFFFFFF), expressionOption(words, 2)});
}

void BenchFile::readScanTime(const Words& words)
{
    const std::string& text = required(words, 1, "the number of milliseconds");
    const std::uint32_t milliseconds = number(words.front().text, text, 0, maximumScanTime);
    m_bench.addScanTime({std::chrono::milliseconds(milliseconds), expressionOption(words, 2)});
}

void BenchFile::readWaitForFile(const Words& words)
{
    const std::string& path = required(words, 1, "the path");
    if (path.empty()) {
        fail(words.front().text, "the path is empty");
    }
    Bench::FileWait wait{path.front() == '/' ? path : m_folder + path};
    std::size_t option = 2;
    if (words.size() > option && isOption(words[option], "call")) {
        wait.call = knownCall(words.front().text, words[option].value);
        ++option;
    }
    for (; option < words.size(); ++option) {
        readWhichCall(words, words[option], wait);
    }
    m_bench.addWaitForFile(std::move(wait));
}

} // namespace simulator
