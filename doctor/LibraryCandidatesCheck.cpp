// SPDX-License-Identifier: MIT
#include "doctor/LibraryChecks.h"

#include "config/Encoding.h"
#include "doctor/CheckResult.h"
#include "doctor/Machine.h"
#include "doctor/Wording.h"
#include "visa/LibraryCandidate.h"
#include "visa/LibraryProbe.h"
#include "visa/VisaLibrary.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace QvVisa {

namespace {

using visa::CandidateFile;
using visa::LibraryCandidate;
using visa::LoadAttempt;
using visa::ProbeReport;
using Kind = visa::ExecutableHeader::Kind;

constexpr const char* s_installRemedy =
    "Install the VISA library of the instruments' maker, or the package qvvisa-finder.";

#ifdef __APPLE__
constexpr const char* s_searchVariable = "DYLD_LIBRARY_PATH";
#else
constexpr const char* s_searchVariable = "LD_LIBRARY_PATH";
#endif

bool isSameFile(const std::string& left, const std::string& right)
{
    std::error_code failure;
    return std::filesystem::equivalent(left, right, failure);
}

bool isForMachine(const CandidateFile& file, const std::string& machine)
{
    const std::vector<std::string>& machines = file.header.machines;
    return machine.empty() ||
           std::find(machines.begin(), machines.end(), machine) != machines.end();
}

/// What is wrong with a file, as the end of a sentence; empty for a library of this machine.
std::string faultOf(const CandidateFile& file, const std::string& machine)
{
    switch (file.header.kind) {
    case Kind::Missing:
        return "does not exist";
    case Kind::DanglingLink:
        return "is a link to a file that does not exist";
    case Kind::Denied:
        return "may not be read by this user";
    case Kind::Unreadable:
        return "cannot be read";
    case Kind::NoFile:
        return "is not a regular file";
    case Kind::Empty:
        return "is empty";
    case Kind::LinkerScript:
        return "is a text for the linker, which programs cannot load";
    case Kind::Text:
        return "is a text, no library";
    case Kind::CutOff:
        return "is cut off: it ends within its header";
    case Kind::Unknown:
        return "is no library";
    case Kind::OtherExecutable:
        return "is a program or an object file, no library";
    case Kind::Library:
        break;
    }
    return isForMachine(file, machine) ? ""
                                       : "is for " + enumerated(file.header.machines) +
                                             ", but this program is for " + machine;
}

/// Whether the loader goes on to the next folder when it meets the file.
bool isPassedOver(const CandidateFile& file)
{
    switch (file.header.kind) {
    case Kind::Missing:
    case Kind::DanglingLink:
    case Kind::Denied:
    case Kind::Library:
        return true;
    default:
        return false;
    }
}

std::string remedyFor(const CandidateFile& file, const std::string& machine)
{
    if (file.header.kind == Kind::Denied) {
        return "Give this user the right to read it: chmod a+r " + shellWord(file.path);
    }
    if (file.header.kind == Kind::Library) {
        std::string remedy = "Install the build of this library for " + machine;
#ifdef __APPLE__
        remedy += ", or start the program with arch -x86_64";
#endif
        return remedy + '.';
    }
    std::string remedy = "Remove it, or install the library again";
    if (file.origin == CandidateFile::Origin::LibraryPath) {
        remedy += std::string(", or take its folder out of ") + s_searchVariable;
    }
    return remedy + '.';
}

std::string loaderSays(const LoadAttempt& attempt)
{
    return "the loader says \"" + pathToUtf8(attempt.message) + '"';
}

/// Reports one run of the check.
class CandidatesCheck
{
public:
    CandidatesCheck(const ProbeReport& probe, const visa::LibrarySearch& search,
                    CheckReport& report)
        : m_probe(probe),
          m_search(search),
          m_report(report)
    {}

    void run()
    {
        for (const LoadAttempt& attempt : m_probe.attempts) {
            const LibraryCandidate candidate = LibraryCandidate::find(attempt.candidate, m_search);
            if (attempt.candidate == m_probe.library) {
                reportTaken(candidate);
                reportMissedByPyVisa();
            } else if (attempt.isLoaded) {
                reportLacking(attempt, candidate);
            } else {
                reportNotLoaded(attempt, candidate);
            }
        }
        m_probe.library.empty() ? reportNone() : reportUnused();
    }

private:
    /// A broken library is a problem if there is no other.
    Mark fault() const { return m_probe.library.empty() ? Mark::Problem : Mark::Warning; }

    void reportTaken(const LibraryCandidate& candidate)
    {
        for (const CandidateFile& file : candidate.files) {
            if (isSameFile(file.path, m_probe.libraryFile)) {
                break;
            }
            const std::string wrong = faultOf(file, m_machine);
            if (!wrong.empty()) {
                m_report.note(pathToUtf8(file.path) + ' ' + wrong + "; the loader passes over it.");
            }
        }
        m_report.ok(pathToUtf8(m_probe.libraryFile) + " (" + m_machine +
                    ") is in use, the first usable library.");
    }

    void reportMissedByPyVisa()
    {
        const std::vector<std::string>& missing = m_probe.missingOptionalCalls;
        const auto lacks = [&missing](const char* call) {
            return std::find(missing.begin(), missing.end(), call) != missing.end();
        };
        if (missing.empty()) {
            return;
        }
        std::string consequence = "ends with an AttributeError where it needs ";
        consequence += missing.size() == 1 ? "it" : "them";
        if (lacks("viOpen")) {
            consequence = "cannot use it at all";
        } else if (lacks("viParseRsrcEx")) {
            consequence = "can list resources with it, but opens none";
        } else if (lacks("viWrite") || lacks("viRead")) {
            consequence = "can list resources with it, but talks to none";
        }
        m_report.note("The library lacks " + enumerated(missing, missing.size()) + ", so PyVISA " +
                          consequence + "; the window does not need " +
                          (missing.size() == 1 ? "it." : "them."),
                      "For PyVISA, use another library, or its backend pyvisa-py.");
    }

    void reportLacking(const LoadAttempt& attempt, const LibraryCandidate& candidate)
    {
        const auto file = std::find_if(
            candidate.files.begin(), candidate.files.end(),
            [this](const CandidateFile& each) { return faultOf(each, m_machine).empty(); });
        m_report.add(fault(),
                     pathToUtf8(file != candidate.files.end() ? file->path : candidate.name) +
                         " is not used, since it lacks " +
                         enumerated(attempt.missingCalls, attempt.missingCalls.size()) + '.',
                     "Remove it, or install a complete version of the library.");
    }

    void reportNotLoaded(const LoadAttempt& attempt, const LibraryCandidate& candidate)
    {
        const visa::ProbedCall* const open = m_probe.openCall();
        if (open != nullptr && &attempt == &m_probe.attempts.back()) {
            m_report.note(nameOf(candidate) +
                          " was not loaded to the end; library.calls says why.");
        } else if (attempt.hasThrown) {
            m_report.add(fault(),
                         nameOf(candidate) +
                             " is not used, since an exception ended its initialisation.",
                         "Install another version of the library.");
        } else if (candidate.files.empty()) {
            const bool isFinder = candidate.name.find("qvvisa-finder") != std::string::npos;
            m_absent.push_back(isFinder ? "the package qvvisa-finder" : nameOf(candidate));
        } else {
            reportUnloadable(attempt, candidate);
        }
    }

    /// Names the file that explains why the loader did not succeed.
    void reportUnloadable(const LoadAttempt& attempt, const LibraryCandidate& candidate)
    {
        for (auto file = candidate.files.begin(); file != candidate.files.end(); ++file) {
            const std::string wrong = faultOf(*file, m_machine);
            if (wrong.empty()) {
                m_report.add(fault(),
                             pathToUtf8(file->path) + " is a library for " + m_machine + ", but " +
                                 loaderSays(attempt) + '.',
                             "Install what the message names, or the library again.");
                return;
            }
            std::string text =
                pathToUtf8(file->path) + ' ' + wrong + "; " + loaderSays(attempt) + '.';
            const auto hidden =
                std::find_if(file + 1, candidate.files.end(), [this](const CandidateFile& each) {
                    return faultOf(each, m_machine).empty();
                });
            if (!isPassedOver(*file) && hidden != candidate.files.end()) {
                text += " The search ends there, before " + pathToUtf8(hidden->path) + '.';
            }
            m_report.add(fault(), text, remedyFor(*file, m_machine));
            if (!isPassedOver(*file)) {
                return;
            }
        }
    }

    void reportNone()
    {
        if (m_absent.size() == m_probe.attempts.size() &&
            m_probe.end.kind == visa::ProbeEnd::Finished) {
            m_report.problem("There is no VISA library on this machine: the loader finds none of " +
                                 enumerated(m_absent, m_absent.size()) + '.',
                             s_installRemedy);
        }
    }

    /// What comes after the library in use.
    void reportUnused()
    {
        const std::vector<std::string>& names = visa::VisaLibrary::candidates();
        const auto taken = std::find(names.begin(), names.end(), m_probe.library);
        if (taken == names.end()) {
            return;
        }
        for (auto name = taken + 1; name != names.end(); ++name) {
            for (const CandidateFile& file : LibraryCandidate::find(*name, m_search).files) {
                if (faultOf(file, m_machine).empty() &&
                    !isSameFile(file.path, m_probe.libraryFile)) {
                    m_report.note(pathToUtf8(file.path) + " is not used, since " + m_probe.library +
                                  " comes first.");
                    break;
                }
            }
        }
    }

    /// The path of a candidate that is one, else its name.
    std::string nameOf(const LibraryCandidate& candidate) const
    {
        return pathToUtf8(candidate.files.empty()
                              ? visa::expandedCandidate(candidate.name, m_search)
                              : candidate.files.front().path);
    }

    const ProbeReport& m_probe;
    const visa::LibrarySearch& m_search;
    CheckReport& m_report;
    const std::string m_machine = visa::machineOfThisProgram();
    std::vector<std::string> m_absent;
};

} // namespace

void checkCandidates(const Machine& machine, CheckReport& report)
{
    checkCandidates(machine, visa::LibrarySearch::ofThisProgram(), report);
}

void checkCandidates(const Machine& machine, const visa::LibrarySearch& search, CheckReport& report)
{
    CandidatesCheck(*machine.probe, search, report).run();
}

} // namespace QvVisa
