// SPDX-License-Identifier: MIT
#include "resourcemanager/Sessions.h"

#include <gtest/gtest.h>

#include <memory>

using resourcemanager::FindList;
using resourcemanager::HandleTable;
using resourcemanager::ManagerSession;
using resourcemanager::Object;

namespace {

class EmptySource : public resourcemanager::ResourceSource
{
public:
    std::string manufacturerName() const override { return "Test"; }
    resourcemanager::SearchResult search(const resourcemanager::Search& /*search*/) override
    {
        return {};
    }
};

std::shared_ptr<ManagerSession> newManager()
{
    return std::make_shared<ManagerSession>(std::make_shared<EmptySource>());
}

std::shared_ptr<FindList> newList()
{
    return std::make_shared<FindList>(std::vector<std::string>{});
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

    EXPECT_EQ(table.find<ManagerSession>(managerHandle).object, manager);
    EXPECT_EQ(table.find<FindList>(listHandle).object, list);
    EXPECT_EQ(table.find<Object>(listHandle).object, list);
    EXPECT_EQ(table.find<Object>(listHandle).manager, manager);
    EXPECT_EQ(table.find<FindList>(managerHandle).object, nullptr);
    EXPECT_EQ(table.find<ManagerSession>(listHandle).object, nullptr);
    EXPECT_EQ(table.find<ManagerSession>(VI_NULL).object, nullptr);
    EXPECT_EQ(table.find<ManagerSession>(0xFFFFFFFF).object, nullptr);
}

TEST(HandleTable, ClosesOnce)
{
    HandleTable table;
    const ViObject handle = table.add(newManager());
    EXPECT_TRUE(table.close(handle));
    EXPECT_EQ(table.find<ManagerSession>(handle).object, nullptr);
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
    EXPECT_NE(table.find<ManagerSession>(owner).object, nullptr);
    EXPECT_TRUE(table.close(owner));
    EXPECT_EQ(table.find<FindList>(alsoOwned).object, nullptr);
    EXPECT_NE(table.find<FindList>(kept).object, nullptr);
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
    const auto inUse = table.find<ManagerSession>(handle).object;
    EXPECT_FALSE(inUse->cancellation().isCancelled());
    table.close(handle);
    EXPECT_EQ(inUse.use_count(), 1);
    EXPECT_TRUE(inUse->cancellation().isCancelled());
}
