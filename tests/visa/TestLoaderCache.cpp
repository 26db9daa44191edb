// SPDX-License-Identifier: MIT
#include "visa/LoaderCache.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

using visa::pathsInLoaderCache;

namespace {

using Texts = std::vector<std::string>;

std::string number(std::size_t value)
{
    const auto word = static_cast<std::uint32_t>(value);
    std::string bytes(sizeof word, '\0');
    std::memcpy(bytes.data(), &word, sizeof word);
    return bytes;
}

/// A cache with these names and paths, as ldconfig writes it.
std::string cacheWith(const std::vector<std::pair<std::string, std::string>>& libraries)
{
    const std::size_t stringsBegin = 48 + 24 * libraries.size();
    std::string entries;
    std::string strings;
    for (const auto& [name, path] : libraries) {
        entries += number(0x0303) + number(stringsBegin + strings.size()) +
                   number(stringsBegin + strings.size() + name.size() + 1) + number(0) + number(0) +
                   number(0);
        strings.append(name).append(1, '\0').append(path).append(1, '\0');
    }
    return "glibc-ld.so.cache1.1" + number(libraries.size()) + number(strings.size()) +
           std::string(20, '\0') + entries + strings;
}

const std::string& specimen()
{
    static const std::string bytes = cacheWith({{"libvisa.so.0", "/opt/a/libvisa.so.0"},
                                                {"libvisa.so", "/opt/a/libvisa.so"},
                                                {"libvisa.so.0", "/opt/b/libvisa.so.0"}});
    return bytes;
}

TEST(LoaderCache, GivesThePathsOfANameInOrder)
{
    EXPECT_EQ(pathsInLoaderCache(specimen(), "libvisa.so.0"),
              (Texts{"/opt/a/libvisa.so.0", "/opt/b/libvisa.so.0"}));
    EXPECT_EQ(pathsInLoaderCache(specimen(), "libvisa.so"), Texts{"/opt/a/libvisa.so"});
    EXPECT_EQ(pathsInLoaderCache(specimen(), "libvisa"), Texts{});
    EXPECT_EQ(pathsInLoaderCache(specimen(), ""), Texts{});
}

TEST(LoaderCache, AnOlderFormMayPrecede)
{
    EXPECT_EQ(pathsInLoaderCache("ld.so-1.7.0" + std::string(37, '\0') + specimen(), "libvisa.so"),
              Texts{"/opt/a/libvisa.so"});
}

TEST(LoaderCache, DamagedBytesGiveNothingOrAPath)
{
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in each run
    for (std::size_t size = 0; size < specimen().size(); ++size) {
        EXPECT_LE(pathsInLoaderCache(specimen().substr(0, size), "libvisa.so.0").size(), 2U);
        for (int each = 0; each < 20; ++each) {
            std::string bytes = specimen();
            bytes[size] = static_cast<char>(random());
            EXPECT_LE(pathsInLoaderCache(bytes, "libvisa.so.0").size(), 3U);
        }
    }
    EXPECT_EQ(pathsInLoaderCache("This is no cache.", "libvisa.so"), Texts{});
}

} // namespace
