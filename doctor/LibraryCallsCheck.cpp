// SPDX-License-Identifier: MIT
#include "doctor/LibraryChecks.h"

#include "config/Encoding.h"
#include "doctor/CheckResult.h"
#include "doctor/Machine.h"
#include "doctor/Wording.h"
#include "visa/LibraryProbe.h"
#include "visa/StatusNames.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <string>
#include <string_view>
#include <vector>

namespace QvVisa {

namespace {

using visa::ProbedCall;
using visa::ProbeEnd;
using visa::ProbeReport;

/// A user waits for the window that long before something seems to be wrong.
constexpr std::chrono::seconds s_slow{3};

/// A call that the probe makes and the window does not.
constexpr std::string_view s_afterTheLast = "viFindNext after the last";

bool beginsWith(std::string_view text, std::string_view begin)
{
    return text.substr(0, begin.size()) == begin;
}

/// With a long resource cut.
std::string nameOf(const ProbedCall& call)
{
    constexpr std::size_t most = 120;
    return pathToUtf8(call.name.size() > most ? call.name.substr(0, most) + "..." : call.name);
}

std::string signalName(int number)
{
    switch (number) {
    case SIGSEGV:
        return "SIGSEGV, a bad memory access";
    case SIGBUS:
        return "SIGBUS, a bad memory access";
    case SIGABRT:
        return "SIGABRT, it gave up";
    case SIGFPE:
        return "SIGFPE, a bad calculation";
    case SIGILL:
        return "SIGILL, an instruction that this processor does not have";
    case SIGKILL:
        return "SIGKILL, perhaps because memory ran out";
    default:
        return "signal " + std::to_string(number);
    }
}

std::string deliveredText(const ProbeReport& probe)
{
    return probe.resources.empty()
               ? std::string()
               : " It had delivered " + counted(probe.resources.size(), "resource") + '.';
}

/// How the child ended, if that is what has to be repaired.
void reportEnd(const ProbeReport& probe, CheckReport& report)
{
    const ProbedCall* const open = probe.openCall();
    const std::string call = open != nullptr ? nameOf(*open) : "between two calls";
    const std::string in = open != nullptr ? " in " + call : ' ' + call;
    const bool isLoading = open != nullptr && beginsWith(open->name, "dlopen");
    const std::string replace = "Install another version of the library.";
    switch (probe.end.kind) {
    case ProbeEnd::Finished:
        return;
    case ProbeEnd::TimedOut:
        report.problem(call + " did not answer within " +
                           durationText(std::chrono::milliseconds(probe.end.detail)) +
                           "; the window waits for it without end." + deliveredText(probe),
                       isLoading ? replace
                                 : "Connect the instruments of this library one after another to "
                                   "find the one that it waits for; --timeout SECONDS gives it "
                                   "longer.");
        return;
    case ProbeEnd::Crashed:
        report.problem("The library crashed" + in + " (" + signalName(probe.end.detail) +
                           "); the window would crash with it." + deliveredText(probe),
                       replace);
        return;
    case ProbeEnd::Exited:
        report.problem("The library ended the program" + in +
                           (probe.end.detail >= 0
                                ? " with exit code " + std::to_string(probe.end.detail)
                                : std::string()) +
                           "; it would end the window." + deliveredText(probe),
                       replace);
        return;
    case ProbeEnd::ReportLost:
        report.problem("The library closed files of the program that are not its own, or wrote to "
                       "them," +
                           in + "; what it did then is unknown." + deliveredText(probe),
                       replace);
        return;
    case ProbeEnd::NoChild:
        report.problem("The library was not called, since no process can be started: " +
                       errorText(probe.end.detail) + '.');
        return;
    }
}

/// A failure that belongs to the course of things: an absent library, the maker's own attributes in
/// another library, a search without a match, the end of a list.
bool isExpectedFailure(const ProbedCall& call)
{
    return beginsWith(call.name, "dlopen") || beginsWith(call.name, "viSetAttribute") ||
           (call.status == VI_ERROR_RSRC_NFOUND && beginsWith(call.name, "viFindRsrc"));
}

void reportCall(const ProbedCall& call, CheckReport& report)
{
    const std::string times =
        call.times > 1 ? ' ' + std::to_string(call.times) + " times" : std::string();
    if (call.hasThrown) {
        report.warning("A C++ exception left " + nameOf(call) + times +
                           "; the window takes it for VI_ERROR_SYSTEM_ERROR.",
                       "Install another version of the library.");
    } else if (call.status < VI_SUCCESS && !isExpectedFailure(call)) {
        report.warning(nameOf(call) + " failed" + times + " with " + statusText(call.status) + '.');
    } else if (call.status > VI_SUCCESS) {
        report.note(nameOf(call) + " answered" + times + " with the warning " +
                    statusText(call.status) + '.');
    }
    if (call.duration >= s_slow) {
        report.warning(nameOf(call) + times + " took " + durationText(call.duration) + '.',
                       "Switch the instruments of this library on, or disconnect them.");
    }
}

bool hasFailedToOpen(const ProbeReport& probe)
{
    return std::any_of(probe.calls.begin(), probe.calls.end(), [](const ProbedCall& call) {
        return call.name == "viOpenDefaultRM" && call.hasAnswered && call.status < VI_SUCCESS;
    });
}

/// The calls of which reportCall() says something that the user should know, equal ones together.
std::vector<ProbedCall> remarkableCalls(const ProbeReport& probe)
{
    const bool isOpen = !hasFailedToOpen(probe);
    std::vector<ProbedCall> found;
    for (std::size_t index = 0; index < probe.calls.size(); ++index) {
        const ProbedCall& call = probe.calls[index];
        // Each search for serial ports ends in that way, and the last one is not the window's.
        const bool isEnd =
            call.name == s_afterTheLast || (call.name == "viFindNext" && index > 0 &&
                                            beginsWith(probe.calls[index - 1].name, "viParseRsrc"));
        const bool isFailure = call.hasThrown || call.status > VI_SUCCESS ||
                               (call.status < VI_SUCCESS && !isExpectedFailure(call));
        // Without a session the other calls cannot but fail.
        const bool isCause = isOpen || call.name == "viOpenDefaultRM";
        if (!call.hasAnswered || isEnd || !((isFailure && isCause) || call.duration >= s_slow)) {
            continue;
        }
        const auto known = std::find_if(found.begin(), found.end(), [&](const ProbedCall& each) {
            return each.name == call.name && each.status == call.status &&
                   each.hasThrown == call.hasThrown;
        });
        if (known == found.end()) {
            found.push_back(call);
        } else {
            known->times += call.times;
            known->duration += call.duration;
        }
    }
    return found;
}

/// The calls of a report in few words: those of one function and status together.
class CallSummary
{
public:
    void add(const ProbedCall& call)
    {
        const bool isWhole = beginsWith(call.name, "viFindRsrc") || beginsWith(call.name, "dlopen");
        const std::string name = isWhole ? nameOf(call) : call.name.substr(0, call.name.find(' '));
        const auto known =
            std::find_if(m_calls.begin(), m_calls.end(), [&](const ProbedCall& each) {
                return each.name == name && each.status == call.status;
            });
        if (known == m_calls.end()) {
            m_calls.push_back(call);
            m_calls.back().name = name;
        } else {
            known->times += call.times;
            known->duration += call.duration;
        }
    }

    /// "viOpenDefaultRM VI_SUCCESS 0.1 ms, viFindNext (3) VI_SUCCESS 0.2 ms".
    std::string text() const
    {
        std::vector<std::string> texts;
        for (const ProbedCall& call : m_calls) {
            texts.push_back(call.name +
                            (call.times > 1 ? " (" + std::to_string(call.times) + ')' : "") + ' ' +
                            visa::statusName(call.status) + ' ' + durationText(call.duration));
        }
        return enumerated(texts, s_most);
    }

    bool isEmpty() const { return m_calls.empty(); }

private:
    static constexpr std::size_t s_most = 16;

    std::vector<ProbedCall> m_calls;
};

void reportCalls(const ProbeReport& probe, CheckReport& report)
{
    constexpr std::size_t most = 6;
    const std::vector<ProbedCall> remarkable = remarkableCalls(probe);
    for (std::size_t index = 0; index < std::min(remarkable.size(), most); ++index) {
        reportCall(remarkable[index], report);
    }
    if (remarkable.size() > most) {
        report.warning(counted(remarkable.size() - most, "more call") + " failed or warned.");
    }
    CallSummary summary;
    for (const ProbedCall& call : probe.calls) {
        const bool isLoading = beginsWith(call.name, "dlclose") ||
                               (beginsWith(call.name, "dlopen") && call.status < VI_SUCCESS);
        if (call.hasAnswered && !isLoading) {
            summary.add(call);
        }
    }
    if (!summary.isEmpty()) {
        report.ok(summary.text() + '.');
    }
}

void reportOutput(const ProbeReport& probe, CheckReport& report)
{
    constexpr std::size_t most = 160;
    if (probe.outputSize == 0) {
        return;
    }
    std::string_view line(probe.output);
    line = line.substr(0, std::min(line.find('\n'), most));
    report.note("The library printed " + sizeText(probe.outputSize) + ", beginning with \"" +
                pathToUtf8(line) + "\".");
}

} // namespace

void checkCalls(const Machine& machine, CheckReport& report)
{
    const ProbeReport& probe = *machine.probe;
    reportEnd(probe, report);
    if (probe.library.empty() && probe.end.kind == ProbeEnd::Finished) {
        report.note("No call was made, since no library is in use.");
    }
    if (std::any_of(probe.resources.begin(), probe.resources.end(),
                    [](const visa::FoundResource& found) { return found.isOverrun; })) {
        report.problem("The library writes past the end of the buffer for a description; the "
                       "window may crash.",
                       "Install another version of the library.");
    }
    reportCalls(probe, report);
    reportOutput(probe, report);
}

} // namespace QvVisa
