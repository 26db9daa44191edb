// SPDX-License-Identifier: MIT
#include "resourcemanager/AttributeTable.h"
#include "resourcemanager/CallRecord.h"
#include "resourcemanager/VisaCalls.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <limits>

using resourcemanager::AttributeTable;
using resourcemanager::Call;
using resourcemanager::CallRecord;

TEST(CallRecord, WritesTheArgumentsTheStatusAndTheResults)
{
    CallRecord record(Call::FindRsrc, true);
    record.argument(std::numeric_limits<std::uint64_t>::max());
    record.hexArgument(0x0E5A0001);
    record.textArgument("\"\\\xE9\n\x7F !~");
    record.textArgument(nullptr);
    record.result("count", 7);
    record.result("description", "a");
    EXPECT_EQ(record.line(VI_ERROR_TMO),
              R"(viFindRsrc(18446744073709551615, 0x0E5A0001, "\"\\\xE9\x0A\x7F !~", null))"
              " -> VI_ERROR_TMO, count=7, description=\"a\"\n");
}

TEST(CallRecord, LeavesOutTheTextsWhenItIsNotWanted)
{
    CallRecord record(Call::Close, false);
    record.textArgument("text");
    record.result("text", "text");
    EXPECT_EQ(record.line(VI_SUCCESS), "viClose() -> VI_SUCCESS\n");
}

TEST(AttributeTable, WritesEachValueInItsOwnWidth)
{
    const std::uint64_t value = 0x8877665544332211;
    for (const auto width : {AttributeTable::Width::Byte, AttributeTable::Width::Short,
                             AttributeTable::Width::Long, AttributeTable::Width::Wide}) {
        const auto size = static_cast<std::size_t>(width);
        AttributeTable table;
        table.addReadOnly(1, width, value);
        std::array<unsigned char, 9> memory{};
        EXPECT_EQ(table.get(1, memory.data()), VI_SUCCESS);
        std::array<unsigned char, 9> expected{};
        std::memcpy(expected.data(), &value, size); // the tests' machines are little-endian
        EXPECT_EQ(memory, expected) << size;
    }
}
