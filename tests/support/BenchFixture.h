// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace support {

/// The bench that the stand-in VISA library reports, for as long as the object lives. The test
/// program must run with LD_LIBRARY_PATH naming the library's folder.
class BenchFixture
{
public:
    /// Lines as docs/bench-file.md has them; none for a bench without instruments.
    explicit BenchFixture(std::string_view lines = "");
    ~BenchFixture();
    BenchFixture(const BenchFixture&) = delete;
    BenchFixture& operator=(const BenchFixture&) = delete;

    /// Another bench from the next session on.
    void write(std::string_view lines);

    /// The calls that the library has seen since the fixture was made or clearCalls() was called,
    /// one line each as the library logs them.
    std::vector<std::string> calls() const;
    void clearCalls();

    /// A path that lines may name, in a folder of the fixture's own.
    std::filesystem::path pathFor(const std::string& name) const;

private:
    TemporaryFolder m_folder;
};

} // namespace support
