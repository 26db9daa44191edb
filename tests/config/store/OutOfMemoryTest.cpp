// SPDX-License-Identifier: MIT
// Each allocation of a call fails once: no exception, and the old state is whole.

#include "tests/config/store/StoreTest.h"
#include "tests/support/FailingAllocation.h"
#include "tests/support/Files.h"

namespace {

using QvVisa::ConfigurationFile;

class StoreOutOfMemory : public StoreTest
{};

TEST_F(StoreOutOfMemory, LoadReplacesEverythingOrNothing)
{
    m_configuration.write(s_lines);
    ConfigurationFile& loaded = store();
    const FileContents other{{{"A", std::string(100, 'a')}},
                             {std::string(100, 'b'), "c"},
                             {{2, {7, 65535, 1}}},
                             {{8, {300, 8, 0, 0, 0}}, {9, {300, 8, 0, 0, 0}}},
                             99};
    const std::string otherLines = ":Provider=99\n"
                                   ":GPIBProperty[DeviceNo=2].PrimaryAddress=7\n"
                                   ":SerialProperty[DeviceNo=8].Baudrate=300\n"
                                   ":SerialProperty[DeviceNo=9].Baudrate=300\n"
                                   "A=" +
                                   std::string(100, 'a') + '\n' + std::string(100, 'b') + "\nc\n";
    const int failed = support::failEachAllocation(
        [&] {
            m_configuration.write(s_lines);
            EXPECT_EQ(held(store()), contentsOfLines()) << "a failed load is not tried again";
            m_configuration.write(otherLines);
        },
        // A change check, which loads.
        [&] { EXPECT_NO_THROW(store()); },
        [&](int number) { EXPECT_EQ(held(loaded), contentsOfLines()) << "allocation " << number; });
    EXPECT_EQ(held(loaded), other);
    EXPECT_GE(failed, 15);
}

TEST_F(StoreOutOfMemory, SetDataReplacesBothTablesOrNone)
{
    m_configuration.write(s_lines);
    ConfigurationFile& changed = store();
    const std::vector<std::pair<std::string, std::string>> entries{
        {std::string(100, 'r'), ""}, {std::string(100, 's'), std::string(100, 't')}, {"u", ""}};
    bool wasSet = false;
    const int failed = support::failEachAllocation(
        [] {}, [&] { EXPECT_NO_THROW(wasSet = changed.setData(entries)); },
        [&](int number) {
            EXPECT_FALSE(wasSet) << "allocation " << number;
            EXPECT_EQ(held(changed), contentsOfLines()) << "allocation " << number;
        });
    EXPECT_TRUE(wasSet);
    EXPECT_EQ(changed.m_resources, (Resources{std::string(100, 'r'), "u"}));
    EXPECT_EQ(changed.m_aliases, (Aliases{{std::string(100, 't'), std::string(100, 's')}}));
    EXPECT_GE(failed, 5);
}

TEST_F(StoreOutOfMemory, SaveWritesTheWholeFileOrNothing)
{
    m_configuration.write(s_lines);
    ConfigurationFile& saved = store();
    const std::string before = m_configuration.read();
    saved.save();
    const std::string after = m_configuration.read();
    const int failed = support::failEachAllocation(
        [&] { m_configuration.write(s_lines); }, [&] { EXPECT_NO_THROW(saved.save()); },
        [&](int number) {
            const std::string now = m_configuration.read();
            EXPECT_TRUE(now == before || now == after) << "allocation " << number << '\n' << now;
        });
    EXPECT_EQ(m_configuration.read(), after);
    EXPECT_GE(failed, 1);
}

} // namespace
