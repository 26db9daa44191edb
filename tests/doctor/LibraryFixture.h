// SPDX-License-Identifier: MIT
#pragma once

#include "tests/doctor/DoctorFixture.h"
#include "tests/support/BenchFixture.h"
#include "tests/support/Sanitizers.h"

#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

namespace support {

/// Calls a library as the doctor does, into m_probe.
class LibraryFixture : public DoctorFixture
{
protected:
    void probe(const std::vector<std::string>& candidates,
               std::chrono::milliseconds timeout = std::chrono::seconds(30))
    {
        visa::ProbeRequest request;
        request.candidates = candidates;
        request.serialPorts = true;
        request.timeout = timeout;
        m_probe = visa::probeLibrary(request);
    }

    /// The simulator with this bench.
    void probeSimulator(const std::string& bench,
                        std::chrono::milliseconds timeout = std::chrono::seconds(30))
    {
        m_bench.write(bench);
        probe({QVVISA_SIMULATOR_LIBRARY}, timeout);
    }

    /// The library that misbehaves, see tests/visa/misbehaving/Misbehaving.cpp.
    void probeMisbehaving(const char* deed,
                          std::chrono::milliseconds timeout = std::chrono::seconds(30))
    {
        ::setenv("QVVISA_MISBEHAVES", deed, 1);
        probe({QVVISA_MISBEHAVING_LIBRARY}, timeout);
    }

    /// The results of a check without those that are ok.
    std::string faults(const std::string& check) const
    {
        std::string lines;
        const std::string all = results(check);
        for (std::size_t begin = 0; begin < all.size();) {
            const std::size_t end = all.find('\n', begin) + 1;
            if (all.compare(begin, 4, "ok: ") != 0) {
                lines += all.substr(begin, end - begin);
            }
            begin = end;
        }
        return lines;
    }

    /// For a library that hangs; long enough for a busy machine to come to the call in which it
    /// does.
    static constexpr std::chrono::milliseconds hangingTimeout{isSanitized ? 6000 : 2000};

    BenchFixture m_bench;
};

} // namespace support
