// SPDX-License-Identifier: MIT
#include "simulator/FindList.h"
#include "simulator/HandleTable.h"
#include "simulator/InstrumentSession.h"
#include "simulator/ResourceManagerSession.h"

#include <gtest/gtest.h>

#include <memory>

using simulator::Bench;
using simulator::FindList;
using simulator::HandleTable;
using simulator::InstrumentSession;
using simulator::ResourceManagerSession;

namespace {

std::shared_ptr<ResourceManagerSession> newManager()
{
    return std::make_shared<ResourceManagerSession>(Bench());
}

std::shared_ptr<FindList> newList()
{
    return std::make_shared<FindList>(newManager(), std::vector<Bench::Hit>{});
}

} // namespace

TEST(HandleTable, FindsAnObjectOnlyAsWhatItIs)
{
    HandleTable table;
    const auto manager = newManager();
    const auto list = newList();
    const ViObject managerHandle = table.add(manager);
    const ViObject listHandle = table.add(list, managerHandle);
    EXPECT_NE(managerHandle, VI_NULL);
    EXPECT_NE(listHandle, managerHandle);

    EXPECT_EQ(table.find<ResourceManagerSession>(managerHandle), manager);
    EXPECT_EQ(table.find<FindList>(listHandle), list);
    EXPECT_EQ(table.find<FindList>(managerHandle), nullptr);
    EXPECT_EQ(table.find<InstrumentSession>(managerHandle), nullptr);
    EXPECT_EQ(table.find<ResourceManagerSession>(listHandle), nullptr);
    EXPECT_EQ(table.find<ResourceManagerSession>(VI_NULL), nullptr);
    EXPECT_EQ(table.find<ResourceManagerSession>(0xFFFFFFFF), nullptr);
}

TEST(HandleTable, ClosesOnce)
{
    HandleTable table;
    const ViObject handle = table.add(newManager());
    EXPECT_TRUE(table.close(handle));
    EXPECT_EQ(table.find<ResourceManagerSession>(handle), nullptr);
    EXPECT_FALSE(table.close(handle));
    EXPECT_FALSE(table.close(VI_NULL));
    EXPECT_FALSE(table.close(handle + 1));
}

TEST(HandleTable, NeverGivesANumberTwice)
{
    HandleTable table;
    const ViObject first = table.add(newManager());
    table.close(first);
    EXPECT_NE(table.add(newManager()), first);
}

TEST(HandleTable, ClosingAnOwnerClosesWhatItOwns)
{
    HandleTable table;
    const ViObject owner = table.add(newManager());
    const ViObject other = table.add(newManager());
    const ViObject owned = table.add(newList(), owner);
    const ViObject alsoOwned = table.add(newList(), owner);
    const ViObject kept = table.add(newList(), other);

    EXPECT_TRUE(table.close(owned));
    EXPECT_NE(table.find<ResourceManagerSession>(owner), nullptr);
    EXPECT_TRUE(table.close(owner));
    EXPECT_EQ(table.find<FindList>(alsoOwned), nullptr);
    EXPECT_NE(table.find<FindList>(kept), nullptr);
}

TEST(HandleTable, EntersNothingForAnOwnerThatIsClosed)
{
    HandleTable table;
    const ViObject owner = table.add(newManager());
    table.close(owner);
    const auto list = newList();
    EXPECT_EQ(table.add(list, owner), VI_NULL);
    EXPECT_EQ(list.use_count(), 1);
}

TEST(HandleTable, AnObjectInUseOutlivesItsClosing)
{
    HandleTable table;
    const ViObject handle = table.add(newManager());
    const auto inUse = table.find<ResourceManagerSession>(handle);
    table.close(handle);
    EXPECT_EQ(inUse.use_count(), 1);
    EXPECT_TRUE(inUse->bench().resources().empty());
}
