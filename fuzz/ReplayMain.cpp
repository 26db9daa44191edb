// SPDX-License-Identifier: MIT
// Feeds files, and the files in folders, to a fuzz target: fuzz_reader FILE|FOLDER...

#include "tests/support/Files.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesAt(const std::filesystem::path& place)
{
    if (!std::filesystem::is_directory(place)) {
        return {place};
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(place)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::size_t replay(const std::filesystem::path& place)
{
    const std::vector<std::filesystem::path> files = filesAt(place);
    for (const std::filesystem::path& file : files) {
        // Flushed at once: after a finding, the last line names the input.
        std::cout << file.string() << std::endl;
        const std::string bytes = support::readFile(file);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    return files.size();
}

} // namespace

int main(int count, char** arguments)
{
    try {
        std::size_t replayed = 0;
        for (int i = 1; i < count; ++i) {
            const std::size_t found = replay(arguments[i]);
            if (found == 0) {
                std::cerr << arguments[i] << " contains no file\n";
                return 1;
            }
            replayed += found;
        }
        if (replayed == 0) {
            std::cerr << "usage: " << arguments[0] << " FILE|FOLDER...\n";
            return 1;
        }
        std::cout << replayed << " inputs replayed\n";
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
