// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/Sanitizers.h"
#include "visa/LibraryProbe.h"
#include "visa/StatusNames.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

/// What the tests of the probe share.
namespace probing {

using Texts = std::vector<std::string>;

// NOLINTNEXTLINE(cert-err58-cpp,bugprone-throwing-static-initialization)
inline const Texts everything{"GPIB0::1::INSTR", "ASRL3::INSTR",
                              "TCPIP0::198.51.100.2::inst0::INSTR"};

/// For a library that hangs; long enough for a busy machine to come to the call in which it does.
inline constexpr std::chrono::milliseconds hangingTimeout{support::isSanitized ? 6000 : 2000};

inline void setVariable(const char* name, const std::string& value)
{
    ::setenv(name, value.c_str(), 1); // NOLINT(concurrency-mt-unsafe)
}

/// Changes a request before it is made.
using Change = void (*)(visa::ProbeRequest&);

inline constexpr Change asItIs = [](visa::ProbeRequest&) {};
inline constexpr Change identifying = [](visa::ProbeRequest& request) { request.identify = true; };
inline constexpr Change withSerialPorts = [](visa::ProbeRequest& request) {
    request.serialPorts = true;
};

inline constexpr Change withHangingTimeout = [](visa::ProbeRequest& request) {
    request.timeout = hangingTimeout;
};

inline visa::ProbeReport probe(const std::string& library, Change change = asItIs)
{
    visa::ProbeRequest request;
    request.candidates = {library};
    request.timeout = std::chrono::seconds(30);
    change(request);
    return visa::probeLibrary(request);
}

inline visa::ProbeReport probeSimulator(Change change = asItIs)
{
    return probe(QVVISA_SIMULATOR_LIBRARY, change);
}

/// deed: see misbehaving/Misbehaving.cpp; empty for a library that behaves.
inline visa::ProbeReport probeMisbehaving(const std::string& deed, Change change = asItIs)
{
    setVariable("QVVISA_MISBEHAVES", deed);
    return probe(QVVISA_MISBEHAVING_LIBRARY, change);
}

inline Texts resourcesOf(const visa::ProbeReport& report)
{
    Texts texts;
    for (const visa::FoundResource& found : report.resources) {
        texts.push_back(found.resource);
    }
    return texts;
}

/// "viFindNext 3 VI_SUCCESS", or "viFindNext ..." for a call without an answer.
inline Texts callsOf(const visa::ProbeReport& report)
{
    Texts texts;
    for (const visa::ProbedCall& call : report.calls) {
        texts.push_back(call.name + (call.times > 1 ? ' ' + std::to_string(call.times) : "") +
                        (call.hasAnswered ? ' ' + visa::statusName(call.status) : " ..."));
    }
    return texts;
}

inline std::string describe(const visa::ProbeEnd& end)
{
    static constexpr std::array<const char*, 6> kinds{"finished", "timed out",   "crashed",
                                                      "exited",   "report lost", "no child"};
    const bool isTimeout = end.kind == visa::ProbeEnd::TimedOut;
    EXPECT_EQ(isTimeout, end.detail == hangingTimeout.count());
    return kinds.at(end.kind) +
           (!isTimeout && end.detail != 0 ? ' ' + std::to_string(end.detail) : "");
}

} // namespace probing
