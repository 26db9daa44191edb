// SPDX-License-Identifier: MIT
#include "tests/support/BenchFixture.h"

#include "tests/support/Files.h"

#include <cstdlib>
#include <sstream>

namespace support {

BenchFixture::BenchFixture(std::string_view lines)
{
    write(lines);
    clearCalls();
    ::setenv("QVVISA_BENCH", pathFor("bench.txt").c_str(), 1);
    ::setenv("QVVISA_BENCH_LOG", pathFor("calls.txt").c_str(), 1);
}

BenchFixture::~BenchFixture()
{
    ::unsetenv("QVVISA_BENCH");
    ::unsetenv("QVVISA_BENCH_LOG");
}

void BenchFixture::write(std::string_view lines)
{
    writeFile(pathFor("bench.txt"), lines);
}

std::vector<std::string> BenchFixture::calls() const
{
    std::vector<std::string> lines;
    std::istringstream log(readFile(pathFor("calls.txt")));
    for (std::string line; std::getline(log, line);) {
        lines.push_back(line);
    }
    return lines;
}

void BenchFixture::clearCalls()
{
    writeFile(pathFor("calls.txt"), "");
}

std::filesystem::path BenchFixture::pathFor(const std::string& name) const
{
    return m_folder.path() / name;
}

} // namespace support
