// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/Bench.h"
#include "simulator/BenchLine.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

/// Reads the text form of a bench; docs/bench-file.md describes it. A line that cannot be read
/// costs that line and leaves a message.
class BenchFile
{
public:
    struct Message
    {
        /// Counted from 1; zero speaks of the file as a whole.
        std::size_t line;
        std::string text;
    };

    /// Each line may make this many resources.
    static constexpr std::uint32_t maximumRepeat = 10'000'000;
    /// An hour, in milliseconds.
    static constexpr std::uint32_t maximumScanTime = 3'600'000;

    /// Reads a file. One that cannot be read is an empty bench with a message.
    static BenchFile read(const std::string& path);

    /// Reads a text; relative paths in it are taken from the folder (empty: the working folder).
    static BenchFile parse(std::string_view text, const std::string& folder = {});

    const Bench& bench() const { return m_bench; }
    const std::vector<Message>& messages() const { return m_messages; }

private:
    using Words = std::vector<BenchLine::Word>;

    BenchFile() = default;

    void readLine(std::string_view line);
    void readResource(const Words& words);
    void readStatus(const Words& words);
    void readCount(const Words& words);
    void readScanTime(const Words& words);
    void readWaitForFile(const Words& words);

    Bench m_bench;
    std::string m_folder;
    std::vector<Message> m_messages;
};

} // namespace simulator
