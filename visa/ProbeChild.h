// SPDX-License-Identifier: MIT
#pragma once

#include "visa/LibraryProbe.h"

#include <chrono>

#include <sys/types.h>

namespace visa {

/// The exit code of a child whose report can no longer be written.
constexpr int probeLostReport = 121;

/// The descriptors of the child's ends of the two pipes.
struct ProbeChildPipes
{
    int report = -1;
    int output = -1;
};

/// The whole life of the probe's child process, called after fork(): sets the process up, makes the
/// calls and reports each before and after on the pipe. Does not return. parent is the process that
/// forked; the deadline is the time at which it kills this one.
[[noreturn]] void runProbeChild(const ProbeRequest& request, ProbeChildPipes pipes, pid_t parent,
                                std::chrono::steady_clock::time_point deadline);

} // namespace visa
