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

    /// Looks the six calls up in a loaded library. Returns the names of those that it lacks.
    static std::vector<std::string> resolve(void* library, Calls& calls);

    /// The process's library, the first of candidates() that qualifies. Loaded by the first call,
    /// from any thread.
    static const VisaLibrary& instance();

    /// Names and paths that instance() tries, in order, as arguments of dlopen(). The finder is the
    /// last one, if the build names its place (QVVISA_FINDER_LIBRARY).
    static const std::vector<std::string>& candidates();

    /// Takes the first candidate that loads and has all six calls; others are unloaded again. The
    /// chosen library stays loaded to the end of the process, since threads of its own may run.
    explicit VisaLibrary(const std::vector<std::string>& candidates);

    VisaLibrary(const VisaLibrary&) = delete;
    VisaLibrary& operator=(const VisaLibrary&) = delete;

    /// False when no candidate qualified; all calls are null then.
    bool isFound() const;

    /// The candidate in use, empty when none was found.
    const std::string& name() const;

    /// What each call returns when none was found: VI_ERROR_LIBRARY_NFOUND, or
    /// VI_ERROR_SYSTEM_ERROR when the initialisation of one threw an exception.
    ViStatus statusWithout() const;

    const Calls& calls() const;

private:
    Calls m_calls;
    std::string m_name;
    ViStatus m_statusWithout = VI_ERROR_LIBRARY_NFOUND;
};

} // namespace visa
