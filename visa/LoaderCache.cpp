// SPDX-License-Identifier: MIT
#include "visa/LoaderCache.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace visa {

namespace {

/// The form that glibc has written since 2.2; an older one may precede it in the file.
constexpr std::string_view s_magic = "glibc-ld.so.cache1.1";
constexpr std::size_t s_headerSize = 48;
constexpr std::size_t s_entrySize = 24;
constexpr std::size_t s_nameOffset = 4;
constexpr std::size_t s_pathOffset = 8;

/// In the machine's own byte order, as the loader reads it; 0 beyond the end.
std::uint32_t numberAt(std::string_view bytes, std::size_t position)
{
    std::uint32_t number = 0;
    if (position + sizeof number <= bytes.size()) {
        std::memcpy(&number, bytes.data() + position, sizeof number);
    }
    return number;
}

/// Whether the text is there, with its terminating zero.
bool hasTextAt(std::string_view bytes, std::size_t position, std::string_view text)
{
    return position < bytes.size() && bytes.substr(position, text.size()) == text &&
           bytes.substr(position + text.size(), 1) == std::string_view("\0", 1);
}

std::string_view pathAt(std::string_view bytes, std::size_t position)
{
    constexpr std::size_t longest = 4096;
    const std::string_view rest = bytes.substr(std::min(position, bytes.size()), longest);
    return rest.substr(0, rest.find('\0'));
}

} // namespace

std::vector<std::string> pathsInLoaderCache(std::string_view cache, std::string_view name)
{
    std::vector<std::string> paths;
    const std::size_t begin = cache.find(s_magic);
    if (begin == std::string_view::npos) {
        return paths;
    }
    const std::string_view bytes = cache.substr(begin);
    const std::size_t count = numberAt(bytes, s_magic.size());
    for (std::size_t index = 0; index < count; ++index) {
        const std::size_t entry = s_headerSize + index * s_entrySize;
        if (entry + s_entrySize > bytes.size()) {
            break;
        }
        if (hasTextAt(bytes, numberAt(bytes, entry + s_nameOffset), name)) {
            paths.emplace_back(pathAt(bytes, numberAt(bytes, entry + s_pathOffset)));
        }
    }
    return paths;
}

} // namespace visa
