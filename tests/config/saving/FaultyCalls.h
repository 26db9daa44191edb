// SPDX-License-Identifier: MIT
#pragma once

/// What the preloaded library does to the calls of its process, the first of which is number 1.
struct FaultPlan
{
    enum Action
    {
        Count,       ///< Nothing.
        Fail,        ///< The call fails with this error.
        FailForGood, ///< So do all after it.
        Interrupt,   ///< Every call that may be interrupted is, once before it is made.
        Shorten,     ///< Every write and read moves half of its bytes.
        Kill,        ///< The process is killed before the call.
        KillAmidst,  ///< A write or read moves half of its bytes, then the process is killed.
        Replace,     ///< Before the call one file takes another's name.
        Rewrite      ///< Before the call one file's bytes are written over another's, in place.
    };

    Action action = Count;
    int call = 0;
    int error = 0;
    const char* replacement = ""; ///< Takes the name, or gives the bytes, of target.
    const char* target = "";
};

// Exported by the library, to be looked up: a process without it must notice.
using FaultyCallsStart = void (*)(const FaultPlan* plan);
/// The names of the calls seen since the start, separated by blanks; valid until the next start.
using FaultyCallsStop = const char* (*)();
