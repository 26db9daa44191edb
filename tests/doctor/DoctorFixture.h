// SPDX-License-Identifier: MIT
#pragma once

#include "doctor/Check.h"
#include "tests/support/FakeSystem.h"
#include "tests/support/TestHome.h"
#include "visa/LibraryProbe.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace support {

/// An empty home and working folder, and an empty machine.
class DoctorFixture : public testing::Test
{
protected:
    /// Writes the configuration file in the home folder: the version header and these lines.
    /// Others may read and search all that leads to it.
    std::filesystem::path writeFile(std::string_view lines = "") const;

    /// The path of that file.
    std::filesystem::path file() const;

    /// What a check finds now, a line for each result: "warning: TEXT". The temporary folder is
    /// FOLDER in it.
    std::string results(const std::string& check) const;

    /// The same with the remedies: "warning: TEXT -> REMEDY".
    std::string remedies(const std::string& check) const;

    /// True when an ordinary user finds exactly this.
    bool ordinaryUserFinds(const std::string& check, const std::string& expected) const;

    QvVisa::Machine machine() const;

    /// For -f.
    std::optional<std::string> m_fileOption;
    /// What the VISA library did.
    std::optional<visa::ProbeReport> m_probe;
    /// What the finder logged.
    std::vector<std::string> m_finderLog;
    /// Seconds by which the checks' clock is ahead of the system's.
    std::int64_t m_clock = 3600;
    TestHome m_home;
    FakeSystem m_system;

private:
    std::string lines(const std::string& check, bool hasRemedies) const;
};

/// Runs the action in a mount namespace of its own, in a child process, and returns what it
/// returns; none where the system allows no such namespace.
std::optional<bool> withOwnMounts(const std::function<bool()>& action);

} // namespace support
