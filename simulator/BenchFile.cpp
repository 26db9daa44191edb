// SPDX-License-Identifier: MIT
#include "simulator/BenchFile.h"

#include "simulator/RegularFile.h"
#include "visa/ResourceName.h"
#include "visa/StatusNames.h"
#include "visa/Text.h"

#include <cstdio>
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

/// The word at this position; 0 is the setting's name.
const std::string& required(const Words& words, std::size_t position, const char* what)
{
    if (words.size() <= position) {
        fail(words.front().text, std::string(what) + " is missing");
    }
    return words[position].text;
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

/// The for=EXPRESSION at this position, which may end a setting of the search.
std::string expressionOption(const Words& words, std::size_t position)
{
    if (position == words.size()) {
        return {};
    }
    if (!isOption(words[position], "for")) {
        failUnknown(words, words[position]);
    }
    if (position + 1 < words.size()) {
        failUnknown(words, words[position + 1]);
    }
    return words[position].value;
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
    const std::optional<Call> call = resourcemanager::callFromText(text);
    if (!call) {
        fail(setting, "there is no call " + quoted(text));
    }
    return *call;
}

/// at=N and for=EXPRESSION: the calls that a setting is for.
template <typename CallSetting>
void readWhichCall(const Words& words, const Word& word, CallSetting& setting)
{
    // The bench is read again by each viOpenDefaultRM, so that call is always the first.
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
    std::string text;
    const std::string problem = readRegularFile(path, text);
    if (!problem.empty()) {
        BenchFile nothing;
        nothing.m_messages.push_back(
            {0, "the bench cannot be read (" + problem + "); it counts as empty"});
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
    const std::optional<ViStatus> status = visa::statusFromText(statusText);
    if (!status) {
        fail(setting, quoted(statusText) + " is neither the name of a status nor a number");
    }
    Bench::Rule<ViStatus> rule{*status, call};
    for (std::size_t i = 3; i < words.size(); ++i) {
        readWhichCall(words, words[i], rule);
    }
    m_bench.add(std::move(rule));
}

void BenchFile::readCount(const Words& words)
{
    const std::string& text = required(words, 1, "the number");
    Bench::Rule<ViUInt32> rule{number(words.front().text, text, 0, 0xFFFFFFFF)};
    rule.expression = expressionOption(words, 2);
    m_bench.add(std::move(rule));
}

void BenchFile::readScanTime(const Words& words)
{
    const std::string& text = required(words, 1, "the number of milliseconds");
    Bench::Rule<std::chrono::milliseconds> rule{
        std::chrono::milliseconds(number(words.front().text, text, 0, maximumScanTime))};
    rule.expression = expressionOption(words, 2);
    m_bench.add(std::move(rule));
}

void BenchFile::readWaitForFile(const Words& words)
{
    const std::string& path = required(words, 1, "the path");
    if (path.empty()) {
        fail(words.front().text, "the path is empty");
    }
    Bench::Rule<std::string> wait{path.front() == '/' ? path : m_folder + path};
    std::size_t option = 2;
    if (words.size() > option && isOption(words[option], "call")) {
        wait.call = knownCall(words.front().text, words[option].value);
        ++option;
    }
    for (; option < words.size(); ++option) {
        readWhichCall(words, words[option], wait);
    }
    m_bench.add(std::move(wait));
}

const std::string_view builtinBench = R"(
resource TCPIP0::192.0.2.10::inst0::INSTR     idn="Quorvane,Simulated multimeter,100001,1.0"
resource TCPIP0::192.0.2.11::hislip0::INSTR   idn="Quorvane,Simulated oscilloscope,100002,1.0"
resource TCPIP0::192.0.2.12::5025::SOCKET     idn="Quorvane,Simulated power supply,100003,1.0"
resource USB0::0x1234::0x5678::100004::INSTR  idn="Quorvane,Simulated power meter,100004,1.0"
resource GPIB0::20::INSTR                     idn="Quorvane,Simulated generator,100005,1.0"
resource ASRL1::INSTR                         idn="Quorvane,Simulated counter,100006,1.0"
resource ASRL2::INSTR                         idn="Quorvane,Simulated thermometer,100007,1.0"
)";

Bench benchFromEnvironment()
{
    const std::string path = environmentValue("QVVISA_BENCH");
    if (path.empty()) {
        return BenchFile::parse(builtinBench).bench();
    }
    const BenchFile file = BenchFile::read(path);
    for (const BenchFile::Message& message : file.messages()) {
        const std::string line = message.line != 0 ? std::to_string(message.line) + ": " : " ";
        std::fprintf(stderr, "%s:%s%s\n", path.c_str(), line.c_str(), message.text.c_str());
    }
    return file.bench();
}

} // namespace simulator
