// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/Bench.h"
#include "simulator/BenchLine.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

/// Reads the text form of a bench, see docs/bench-file.md. A line that cannot be read is ignored,
/// with a message.
class BenchFile
{
public:
    struct Message
    {
        /// From 1; 0 for the file as a whole.
        std::size_t line;
        std::string text;
    };

    /// The most resources that one line can describe.
    static constexpr std::uint32_t maximumRepeat = 10'000'000;
    /// An hour, in milliseconds.
    static constexpr std::uint32_t maximumScanTime = 3'600'000;

    /// Reads a regular file of at most 64 MiB. Any other one is an empty bench with a message.
    static BenchFile read(const std::string& path);

    /// Reads a text. Relative paths in it begin at the folder, which ends in / (empty: the working
    /// folder).
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

/// The bench without a bench file: one resource of each interface kind and two serial ports.
extern const std::string_view builtinBench;

/// The bench that QVVISA_BENCH names, or the built-in one when it is unset or empty. Messages about
/// the file go to standard error, as FILE:LINE: MESSAGE.
Bench benchFromEnvironment();

} // namespace simulator
