// SPDX-License-Identifier: MIT
#pragma once

#include "resourcemanager/VisaCalls.h"
#include "tests/simulator/LoadedLibrary.h"
#include "tests/support/BenchFixture.h"
#include "visa/StatusNames.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

/// A case with the library loaded and a bench of its own. Statuses are compared by name, so that a
/// failure can be read.
class CallsFixture : public testing::Test
{
protected:
    /// A client's buffer whose every character shows whether it was written.
    struct Buffer
    {
        Buffer() { characters.fill('~'); }
        std::string text() const { return characters.data(); }
        bool isUntouched() const { return characters == Buffer().characters; }

        // One more than a description takes, to catch what is written after it.
        std::array<char, VI_FIND_BUFLEN + 1> characters;
    };

    /// No thread of a case reads the environment meanwhile.
    static void setVariable(const char* name, const std::string& value)
    {
        ::setenv(name, value.c_str(), 1); // NOLINT(concurrency-mt-unsafe)
    }
    static void unsetVariable(const char* name)
    {
        ::unsetenv(name); // NOLINT(concurrency-mt-unsafe)
    }

    ViSession openManager() const
    {
        ViSession session = VI_NULL;
        EXPECT_EQ(visa::statusName(visa.openDefaultRM(&session)), "VI_SUCCESS");
        return session;
    }

    /// All that a search finds, read as the count says.
    std::vector<std::string> list(ViSession session, const char* expression) const
    {
        std::vector<std::string> found;
        ViFindList findList = VI_NULL;
        ViUInt32 count = 0;
        Buffer description;
        if (visa.findRsrc(session, expression, &findList, &count, description.characters.data()) <
            0) {
            return found;
        }
        found.push_back(description.text());
        for (ViUInt32 i = 1; i < count; ++i) {
            EXPECT_EQ(visa::statusName(visa.findNext(findList, description.characters.data())),
                      "VI_SUCCESS");
            found.push_back(description.text());
        }
        EXPECT_EQ(visa::statusName(visa.findNext(findList, description.characters.data())),
                  "VI_ERROR_RSRC_NFOUND");
        EXPECT_EQ(visa::statusName(visa.close(findList)), "VI_SUCCESS");
        return found;
    }

    const LoadedLibrary& visa = LoadedLibrary::instance();
    support::BenchFixture bench;
};
