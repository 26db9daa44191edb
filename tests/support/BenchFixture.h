// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace support {

/// The bench of the VISA simulator while the object lives. The test program runs with
/// LD_LIBRARY_PATH set to the simulator's folder.
class BenchFixture
{
public:
    /// Lines in the format of docs/bench-file.md; empty for a bench without instruments.
    explicit BenchFixture(std::string_view lines = "");
    ~BenchFixture();
    BenchFixture(const BenchFixture&) = delete;
    BenchFixture& operator=(const BenchFixture&) = delete;

    /// Replaces the bench; takes effect with the next session.
    void write(std::string_view lines);

    /// The simulator's log of calls, one line each, since construction or the last clearCalls().
    std::vector<std::string> calls() const;
    void clearCalls();

    /// A path in a folder of the fixture, for use in lines.
    std::filesystem::path pathFor(const std::string& name) const;

private:
    TemporaryFolder m_folder;
};

} // namespace support
