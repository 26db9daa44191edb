// SPDX-License-Identifier: MIT
#include "config/SearchPlaces.h"

#include "config/ConfigurationFile.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

using QvVisa::PlaceVerdict;
using QvVisa::SearchPlace;

namespace {

/// A file, a folder or nothing at each of the first three places.
enum class At
{
    Nothing,
    File,
    Folder,
};

void create(const std::filesystem::path& path, At what)
{
    std::filesystem::create_directories(path.parent_path());
    if (what == At::File) {
        support::writeFile(path, "");
    } else if (what == At::Folder) {
        std::filesystem::create_directory(path);
    }
}

} // namespace

TEST(SearchPlaces, UsedPlaceIsWhatTheStoreFinds)
{
    for (int combination = 0; combination < 27; ++combination) {
        const support::TemporaryFolder folder;
        const std::filesystem::path root = folder.path();
        const auto at = [combination](int divisor) {
            return static_cast<At>(combination / divisor % 3);
        };
        create(root / "named.conf", at(1));
        create(root / "work" / "visa.conf", at(3));
        create(root / ".quorvane" / "visa.conf", at(9));
        ASSERT_EQ(::chdir((root / "work").c_str()), 0);
        ::setenv("QVVISACONFFILE", "../named.conf", 1);
        ::setenv("HOME", root.c_str(), 1);
        std::string used;
        for (const SearchPlace& place : QvVisa::searchPlaces(QvVisa::searchEnvironment())) {
            if (place.verdict == PlaceVerdict::Used) {
                EXPECT_EQ(used, "") << "two places are used";
                used = place.path;
            }
        }
        EXPECT_EQ(used, QvVisa::ConfigurationFile::searchConfigFile(false)) << combination;
        ASSERT_EQ(::chdir("/"), 0);
    }
}

TEST(SearchPlaces, RelativeNameIsLookedUpFromTheGivenWorkingFolder)
{
    const support::TemporaryFolder folder;
    support::writeFile(folder.path() / "named.conf", "");
    QvVisa::SearchEnvironment environment;
    environment.configurationFile = "named.conf";
    EXPECT_EQ(searchPlaces(environment).front().verdict, PlaceVerdict::Missing);
    environment.workingFolder = folder.path();
    EXPECT_EQ(searchPlaces(environment).front().verdict, PlaceVerdict::Used);
}

TEST(SearchPlaces, NothingIsSetInAnEmptyEnvironment)
{
    const std::vector<SearchPlace> places = QvVisa::searchPlaces({});
    ASSERT_EQ(places.size(), 4U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(places[i].verdict, PlaceVerdict::Unset);
        EXPECT_EQ(places[i].path, "");
    }
    EXPECT_EQ(places[3].path, "/Library/Preferences/com.quorvane.visa.conf");
}
