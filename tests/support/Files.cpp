// SPDX-License-Identifier: MIT
#include "tests/support/Files.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace support {

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void writeFile(const std::filesystem::path& path, std::string_view bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

void setModificationTime(const std::filesystem::path& path, std::int64_t seconds)
{
    struct timespec times[2] = {};
    times[0].tv_sec = seconds;
    times[1].tv_sec = seconds;
    if (::utimensat(AT_FDCWD, path.c_str(), times, 0) != 0) {
        throw std::runtime_error("cannot set the time of " + path.string());
    }
}

} // namespace support
