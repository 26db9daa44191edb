// SPDX-License-Identifier: MIT
#include "command/ProbeFailure.h"

#include "config/Encoding.h"
#include "doctor/Wording.h"
#include "visa/LibraryProbe.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <system_error>

namespace QvVisa {

namespace {

constexpr const char* s_hint = " (qvvisa doctor says more)";

/// "viFindNext of libvisa.so.0", or "dlopen libvisa.so.0" for a library that is not in use yet.
std::string openCallText(const visa::ProbeReport& report)
{
    const visa::ProbedCall* const call = report.openCall();
    if (call == nullptr) {
        return report.library.empty() ? "the search for a VISA library" : libraryName(report);
    }
    return pathToUtf8(call->name) +
           (report.library.empty() ? std::string() : " of " + libraryName(report));
}

std::string secondsText(std::chrono::milliseconds time)
{
    constexpr int millisecondsPerSecond = 1000;
    std::string text = std::to_string(time.count() / millisecondsPerSecond);
    if (const auto rest = time.count() % millisecondsPerSecond; rest != 0) {
        const std::string digits = std::to_string(millisecondsPerSecond + rest).substr(1);
        text += '.' + digits.substr(0, digits.find_last_not_of('0') + 1);
    }
    return text + (text == "1" ? " second" : " seconds");
}

/// How the child ended, if not as it should have.
std::string endText(const visa::ProbeReport& report, std::chrono::milliseconds timeout)
{
    const int detail = report.end.detail;
    switch (report.end.kind) {
    case visa::ProbeEnd::Finished:
        return {};
    case visa::ProbeEnd::TimedOut:
        return openCallText(report) + " did not return within " + secondsText(timeout);
    case visa::ProbeEnd::Crashed:
        return openCallText(report) +
               " crashed: " + ::strsignal(detail); // NOLINT(concurrency-mt-unsafe)
    case visa::ProbeEnd::Exited:
        return openCallText(report) + " ended the program" +
               (detail < 0 ? std::string() : " with exit status " + std::to_string(detail));
    case visa::ProbeEnd::ReportLost:
        return openCallText(report) + " closed the program's files";
    case visa::ProbeEnd::NoChild:
        return "no process could be started: " + std::generic_category().message(detail);
    }
    return {};
}

/// Why a file that is there is not in use; empty for a candidate that is merely absent.
std::string attemptText(const visa::LoadAttempt& attempt)
{
    const std::string name = pathToUtf8(attempt.candidate);
    if (attempt.hasThrown) {
        return name + " threw an exception while it was loaded";
    }
    if (attempt.isLoaded) {
        std::string calls;
        for (const std::string& call : attempt.missingCalls) {
            calls += (calls.empty() ? "" : ", ") + call;
        }
        return name + " lacks " + calls;
    }
    const bool isAbsent = attempt.message.find("No such file") != std::string::npos ||
                          attempt.message.find("no such file") != std::string::npos;
    return isAbsent ? std::string() : pathToUtf8(attempt.message);
}

std::string noLibraryText(const visa::ProbeReport& report)
{
    std::string text;
    for (const visa::LoadAttempt& attempt : report.attempts) {
        if (const std::string reason = attemptText(attempt); !reason.empty()) {
            text += (text.empty() ? ": " : "; ") + reason;
        }
    }
    return "this machine has no VISA library that can be used" + text;
}

std::string failureText(const std::string& call, ViStatus status)
{
    return pathToUtf8(call) + " failed with " + statusText(status);
}

/// The call of viOpenDefaultRM, if it failed; else null.
const visa::ProbedCall* failedOpen(const visa::ProbeReport& report)
{
    const auto call =
        std::find_if(report.calls.begin(), report.calls.end(),
                     [](const visa::ProbedCall& each) { return each.name == "viOpenDefaultRM"; });
    return call != report.calls.end() && call->hasAnswered && call->status < VI_SUCCESS ? &*call
                                                                                        : nullptr;
}

} // namespace

std::string libraryName(const visa::ProbeReport& report)
{
    const bool isPath = report.library.find('/') != std::string::npos;
    return pathToUtf8(isPath && !report.libraryFile.empty() ? report.libraryFile : report.library);
}

std::optional<CommandError> failureOf(const visa::ProbeReport& report,
                                      std::chrono::milliseconds timeout)
{
    if (const std::string text = endText(report, timeout); !text.empty()) {
        return CommandError(ExitCode::LibraryFailed, text + s_hint);
    }
    if (report.library.empty()) {
        return CommandError(ExitCode::LibraryFailed, noLibraryText(report) + s_hint);
    }
    if (const visa::ProbedCall* const call = failedOpen(report)) {
        return CommandError(ExitCode::LibraryFailed,
                            failureText(call->name + " of " + libraryName(report), call->status) +
                                s_hint);
    }
    if (report.hasSearched && report.searchStatus == VI_ERROR_INV_EXPR) {
        return CommandError(ExitCode::WrongUsage,
                            libraryName(report) + " does not understand the expression");
    }
    const bool isEmpty = report.searchStatus == VI_ERROR_RSRC_NFOUND;
    if (report.hasSearched && report.searchStatus < VI_SUCCESS && !isEmpty) {
        return CommandError(
            ExitCode::LibraryFailed,
            failureText("viFindRsrc of " + libraryName(report), report.searchStatus) + s_hint);
    }
    return std::nullopt;
}

} // namespace QvVisa
