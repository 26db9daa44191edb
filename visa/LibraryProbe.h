// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace visa {

/// A call that the probe made in the child process, or several calls in a row of the same name and
/// status.
struct ProbedCall
{
    /// What was called: "dlopen libvisa.so.0", "dlclose ...", "viOpenDefaultRM", "viFindRsrc ?*",
    /// "viFindNext", "viParseRsrc ASRL1::INSTR", "viWrite USB0::..." and so on. Any bytes.
    std::string name;
    /// The last answer. For dlopen, VI_SUCCESS or VI_ERROR_LIBRARY_NFOUND. VI_ERROR_SYSTEM_ERROR
    /// for a call that a C++ exception left, as in the forwarders of visa/VisaApi.h.
    ViStatus status = VI_SUCCESS;
    /// Of all times together.
    std::chrono::nanoseconds duration{};
    std::uint64_t times = 1;
    /// False for the call in which the child hung or ended; only the last call of a report can be
    /// one.
    bool hasAnswered = false;
    bool hasThrown = false;
};

/// How the child process ended.
struct ProbeEnd
{
    enum Kind
    {
        /// All calls were made.
        Finished,
        /// Killed at the deadline; detail is the timeout in milliseconds.
        TimedOut,
        /// By a signal; detail is its number.
        Crashed,
        /// The library ended the process; detail is the exit code, -1 where the system does not
        /// say.
        Exited,
        /// The library closed the pipe on which the child reports, or wrote to it.
        ReportLost,
        /// No child process could be started; detail is the errno.
        NoChild,
    };
    Kind kind = NoChild;
    int detail = 0;
};

/// A candidate that the probe tried to load.
struct LoadAttempt
{
    std::string candidate;
    bool isLoaded = false;
    /// A C++ exception left an initialiser of the library.
    bool hasThrown = false;
    /// The loader's message when it was not loaded. Any bytes.
    std::string message;
    /// Which of the six calls of visa/VisaApi.h it lacks; it is in use if none.
    std::vector<std::string> missingCalls;
};

/// A resource that the library delivered.
struct FoundResource
{
    /// At most VI_FIND_BUFLEN bytes, any but NUL.
    std::string resource;
    /// The status of the call that delivered it; a warning is possible.
    ViStatus status = VI_SUCCESS;
    /// The library wrote no terminating zero.
    bool isUnterminated = false;
    /// The library wrote past the end of the caller's buffer.
    bool isOverrun = false;

    /// With ProbeRequest::identify: the answer to *IDN? as it came, any bytes.
    std::string identity;
    /// Of the call that failed, or VI_SUCCESS. VI_ERROR_LIBRARY_NFOUND when the instrument was not
    /// asked: the library lacks a call, the time was over, or the resource is nothing that
    /// understands a message (such as GPIB0::INTFC).
    ViStatus identifyStatus = VI_ERROR_LIBRARY_NFOUND;
    bool isIdentified = false;
};

/// A serial port as the window's property dialog would list it.
struct FoundSerialPort
{
    std::string resource;
    /// 0 when the library could not parse the resource, as in the window.
    ViUInt16 interfaceNumber = 0;
    ViStatus parseStatus = VI_SUCCESS;
};

struct ProbeRequest
{
    ProbeRequest();

    std::string expression = "?*";
    /// Ask each found instrument *IDN?.
    bool identify = false;
    /// Also search for serial ports, in the way of the window's property dialog.
    bool serialPorts = false;
    /// For everything together.
    std::chrono::milliseconds timeout{10000};
    /// VisaLibrary::candidates().
    std::vector<std::string> candidates;
    /// Variables that are set in the child before the library is loaded. The dynamic loader does
    /// not see them: it reads its own when a program starts.
    std::vector<std::pair<std::string, std::string>> environment;
};

/// What the child reported until its end. All bounds are far above what a machine has; the child's
/// memory may be damaged, so nothing it says is trusted.
struct ProbeReport
{
    /// More resources, calls or bytes of output than this are not kept.
    static constexpr std::size_t mostResources = 100000;
    static constexpr std::size_t mostCalls = 10000;
    static constexpr std::size_t mostOutput = 8192;
    /// After so many failing calls in a row the list is not read any further.
    static constexpr std::uint64_t mostFailures = 1000;

    /// The candidate in use, empty when none is.
    std::string library;
    /// The file that it is, empty when none is.
    std::string libraryFile;
    /// In order, up to the one in use.
    std::vector<LoadAttempt> attempts;
    /// Which of optionalCalls() the library in use lacks.
    std::vector<std::string> missingOptionalCalls;

    std::vector<ProbedCall> calls;
    /// Calls that were made but are not listed, since there were more than mostCalls.
    std::uint64_t omittedCalls = 0;

    /// viFindRsrc for the expression has answered.
    bool hasSearched = false;
    ViStatus searchStatus = VI_SUCCESS;
    /// How many matches viFindRsrc announced.
    ViUInt32 count = 0;
    /// Everything that the library delivered, in order.
    std::vector<FoundResource> resources;
    /// Calls of viFindNext that failed, each of them an entry less.
    std::uint64_t droppedEntries = 0;
    /// The list was not read to its end, because of mostResources or mostFailures.
    bool isListCut = false;
    /// A viFindNext after the announced count delivered another entry, which the window never asks
    /// for.
    bool hasMoreThanCount = false;
    /// What the window would list: nothing unless viFindRsrc returned VI_SUCCESS, and no entry that
    /// was delivered with a warning. Sorted, with duplicates.
    std::vector<std::string> windowList;

    /// With ProbeRequest::serialPorts.
    bool hasSearchedSerialPorts = false;
    ViStatus serialSearchStatus = VI_SUCCESS;
    std::vector<FoundSerialPort> serialPorts;

    /// What the library printed on standard output and standard error, cut. Any bytes.
    std::string output;
    std::uint64_t outputSize = 0;

    ProbeEnd end;

    /// The call in which the child hung or ended; null when it was in none.
    const ProbedCall* openCall() const;
};

/// The published calls beyond the six that other clients need: PyVISA opens and closes instruments
/// with them.
const std::vector<std::string>& optionalCalls();

/// Loads the first candidate that has all six calls, as VisaLibrary does, and makes the calls of
/// the window's search, all in a child process. Returns when the child is done or, after the
/// timeout, has been killed, together with all processes of its group. The library's output is
/// kept apart from the caller's, and its standard input is empty.
///
/// The child is a fork without an exec, so that it has the dynamic loader's state of the calling
/// program, and any program can call this, tests included. Handlers that the caller registered with
/// atexit() do not run in it, and the caller's standard streams are flushed before. Call it while
/// the process has one thread.
ProbeReport probeLibrary(const ProbeRequest& request);

} // namespace visa
