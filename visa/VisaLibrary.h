// SPDX-License-Identifier: MIT
#pragma once

#include "visa/VisaApi.h"

#include <string>
#include <vector>

namespace visa {

/// A VISA library loaded at run time. The calls of visa/VisaApi.h forward to instance().
class VisaLibrary
{
public:
    /// The six calls, null in a library that was not found.
    struct Calls
    {
        decltype(&::viOpenDefaultRM) openDefaultRM = nullptr;
        decltype(&::viSetAttribute) setAttribute = nullptr;
        decltype(&::viFindRsrc) findRsrc = nullptr;
        decltype(&::viFindNext) findNext = nullptr;
        decltype(&::viParseRsrc) parseRsrc = nullptr;
        decltype(&::viClose) close = nullptr;
    };

    /// The process's library: the first of candidates() that qualifies. Searched for on the first
    /// call, from whichever thread, and kept to the end of the process.
    static const VisaLibrary& instance();

    /// Names and paths that instance() tries, in order, each as the dynamic loader takes it.
    static const std::vector<std::string>& candidates();

    /// Takes the first candidate that loads and has all six calls; what does not qualify is
    /// unloaded again. The chosen library stays loaded to the end of the process, since threads
    /// of its own may still run.
    explicit VisaLibrary(const std::vector<std::string>& candidates);

    VisaLibrary(const VisaLibrary&) = delete;
    VisaLibrary& operator=(const VisaLibrary&) = delete;

    /// False when no candidate qualified; all calls are null then.
    bool isFound() const;

    /// The candidate in use, empty when none was found.
    const std::string& name() const;

    const Calls& calls() const;

private:
    Calls m_calls;
    std::string m_name;
};

} // namespace visa
