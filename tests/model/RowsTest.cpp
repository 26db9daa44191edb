// SPDX-License-Identifier: MIT
// Adding and removing rows, and the selection's part in it.

#include "tests/model/ModelTest.h"

#include <QStringListModel>

#include <limits>

namespace {

class ModelRows : public ModelTest
{
protected:
    Rows rowsWithout(int row, int count) const
    {
        Rows left = rows();
        left.erase(left.begin() + row, left.begin() + row + count);
        return left;
    }
};

TEST_F(ModelRows, AddAppendsTheTextsUnchanged)
{
    Rows expected = rows();
    for (int i = 0; i < 2; ++i) {
        m_model->add(text(" a =#;: b "), text(" c =#;: d "));
        expected.emplace_back(text(" a =#;: b "), text(" c =#;: d "));
    }
    m_model->addEntry();
    expected.emplace_back();
    EXPECT_EQ(rows(), expected);
    EXPECT_TRUE(m_model->isDirty());
}

TEST_F(ModelRows, RemoveRowsRemovesExactlyTheBlock)
{
    for (int row = 0; row <= 3; ++row) {
        for (int count = 0; count <= 3 - row; ++count) {
            load("A\nB\nC\n");
            const Rows expected = rowsWithout(row, count);
            EXPECT_TRUE(m_model->removeRows(row, count)) << row << ' ' << count;
            EXPECT_EQ(rows(), expected) << row << ' ' << count;
            EXPECT_TRUE(m_model->isDirty()) << row << ' ' << count;
        }
    }
}

TEST_F(ModelRows, RemoveRowsRefusesABlockOutsideTheTable)
{
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    const Rows before = rows();
    for (const auto& [row, count] :
         {std::pair(3, 1), std::pair(0, 4), std::pair(2, 2), std::pair(4, 0), std::pair(-1, 1),
          std::pair(-1, 2), std::pair(2, -1), std::pair(-1, -1), std::pair(1, most),
          std::pair(most, most), std::pair(least, least), std::pair(0, least),
          std::pair(most, least), std::pair(least, most)}) {
        EXPECT_FALSE(m_model->removeRows(row, count)) << row << ' ' << count;
    }
    EXPECT_EQ(rows(), before);
    EXPECT_FALSE(m_model->isDirty());
}

TEST_F(ModelRows, RemoveSelectedEntryRemovesTheCurrentRow)
{
    select(1);
    // The current row, not the selected one.
    m_selection->select(m_model->index(0, 0), QItemSelectionModel::ClearAndSelect);
    const Rows expected = rowsWithout(1, 1);
    m_model->removeSelectedEntry();
    EXPECT_EQ(rows(), expected);
    EXPECT_TRUE(m_model->isDirty());
}

TEST_F(ModelRows, SetResourceChangesTheSelectedRowsResourceOnly)
{
    select(2);
    // The selected row, not the current one.
    m_selection->setCurrentIndex(m_model->index(0, 0), QItemSelectionModel::NoUpdate);
    Rows expected = rows();
    m_model->setResource(expected[2].first);
    EXPECT_FALSE(m_model->isDirty()) << "the same text";
    for (const QString& resource : {text(" new = #;: one "), expected[2].first, QString()}) {
        m_model->setResource(resource);
        expected[2].first = resource;
        EXPECT_EQ(rows(), expected);
        EXPECT_TRUE(m_model->isDirty()) << "also after the former text";
    }
}

TEST_F(ModelRows, WithoutASuitableSelectionNothingChanges)
{
    const Rows before = rows();
    const auto expectNoChange = [&](bool remove, const char* selection) {
        remove ? m_model->removeSelectedEntry() : m_model->setResource(text("x"));
        EXPECT_EQ(rows(), before) << selection;
        EXPECT_FALSE(m_model->isDirty()) << selection;
    };
    for (const bool remove : {false, true}) {
        m_model->m_selectionModel = nullptr;
        expectNoChange(remove, "no selection model");
        select(1, QItemSelectionModel::NoUpdate);
        m_selection->clearSelection();
        expectNoChange(remove, "no selection");
    }
    m_selection->clearCurrentIndex();
    m_selection->select(m_model->index(1, 0), QItemSelectionModel::ClearAndSelect);
    expectNoChange(true, "no current row");
    m_selection->select(m_model->index(1, 1), QItemSelectionModel::ClearAndSelect);
    expectNoChange(false, "a cell of the second column");
}

TEST_F(ModelRows, ASelectionBeyondTheLastRowChangesNothing)
{
    // The selection of a longer table, as a view may have it for rows that are gone.
    QStringListModel longer(QStringList{{}, {}, {}, {}, {}});
    QItemSelectionModel selection(&longer);
    m_model->m_selectionModel = &selection;
    const Rows before = rows();
    const auto select = [&](int row) {
        selection.setCurrentIndex(longer.index(row), QItemSelectionModel::ClearAndSelect);
        ASSERT_EQ(selection.selectedRows().size(), 1);
    };
    for (const int row : {3, 4}) {
        select(row);
        m_model->removeSelectedEntry();
        m_model->setResource(text("x"));
        EXPECT_EQ(rows(), before) << row;
        EXPECT_FALSE(m_model->isDirty()) << row;
    }
    select(2);
    m_model->setResource(text("x"));
    EXPECT_EQ(rows()[2].first, text("x"));
    m_model->removeSelectedEntry();
    EXPECT_EQ(rows(), (Rows{before[0], before[1]}));
}

} // namespace
