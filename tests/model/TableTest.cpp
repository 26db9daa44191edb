// SPDX-License-Identifier: MIT
// What the model shows, and what an edit of a cell stores.

#include "tests/model/ModelTest.h"

#include <limits>

namespace {

class ModelTable : public ModelTest
{};

TEST_F(ModelTable, HasTwoEditableColumnsForAnyParent)
{
    const Qt::ItemFlags expected = Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsEnabled;
    for (const QModelIndex& index : {QModelIndex(), m_model->index(0, 0), m_model->index(2, 1)}) {
        EXPECT_EQ(m_model->columnCount(index), 2);
        EXPECT_EQ(m_model->rowCount(index), 3);
        EXPECT_EQ(m_model->flags(index), expected);
    }
}

TEST_F(ModelTable, HasHorizontalTitlesInTheDisplayRoleOnly)
{
    EXPECT_EQ(m_model->headerData(0, Qt::Horizontal), QVariant(text("Resource identifier")));
    EXPECT_EQ(m_model->headerData(1, Qt::Horizontal), QVariant(text("Alias")));
    for (const int section : {-1, 0, 1, 2}) {
        EXPECT_FALSE(m_model->headerData(section, Qt::Vertical).isValid()) << section;
        for (const int role : {int(Qt::EditRole), int(Qt::ToolTipRole), -1}) {
            EXPECT_FALSE(m_model->headerData(section, Qt::Horizontal, role).isValid()) << section;
        }
    }
    EXPECT_FALSE(m_model->headerData(2, Qt::Horizontal).isValid());
    EXPECT_FALSE(m_model->headerData(-1, Qt::Horizontal).isValid());
}

TEST_F(ModelTable, ShowsTheTextsInTheDisplayAndEditRolesOnly)
{
    for (const int role : {int(Qt::DisplayRole), int(Qt::EditRole)}) {
        EXPECT_EQ(m_model->data(m_model->index(1, 0), role), QVariant(text("GPIB0::2::INSTR")));
        EXPECT_EQ(m_model->data(m_model->index(1, 1), role), QVariant(QString()));
        EXPECT_EQ(m_model->data(m_model->index(2, 1), role), QVariant(text("DMM")));
    }
    for (const int role : {int(Qt::DecorationRole), int(Qt::ToolTipRole), int(Qt::UserRole), -1}) {
        EXPECT_FALSE(m_model->data(m_model->index(0, 0), role).isValid()) << role;
    }
}

constexpr std::pair<int, int> s_outside[] = {
    {0, 2}, {0, -1}, {3, 0}, {std::numeric_limits<int>::max(), 1}, {-1, 0}, {-1, -1}};

TEST_F(ModelTable, IndexesOutsideTheTableShowAndChangeNothing)
{
    const Rows before = rows();
    for (const auto& [row, column] : s_outside) {
        EXPECT_FALSE(m_model->data(m_model->at(row, column)).isValid()) << row << ' ' << column;
        EXPECT_TRUE(m_model->setData(m_model->at(row, column), text("x"))) << row << ' ' << column;
    }
    EXPECT_EQ(rows(), before);
    EXPECT_FALSE(m_model->isDirty());
}

TEST_F(ModelTable, AnEditInAnotherRoleChangesNothingAndReturnsTrue)
{
    const Rows before = rows();
    for (const int role : {int(Qt::DisplayRole), int(Qt::CheckStateRole), int(Qt::UserRole), -1}) {
        EXPECT_TRUE(m_model->setData(m_model->index(0, 0), text("other"), role));
    }
    EXPECT_EQ(rows(), before);
    EXPECT_FALSE(m_model->isDirty());
}

TEST_F(ModelTable, AnEditStoresTheCleanedText)
{
    const QString zero = QString(QChar(u'a')) + QChar(0) + QChar(u'b');
    const QString euro = QStringLiteral("\u20AC\u00E9");
    const struct
    {
        QVariant typed;
        QString resource;
        QString alias;
    } rows[] = {
        {text("  my dev:1 #x "), text("my_dev:1_x"), text("my_dev1_x")},
        {QString(), {}, {}},
        {QVariant(), {}, {}},
        {text("   "), {}, {}},
        {42, text("42"), text("42")},
        {QByteArray("a b"), text("a_b"), text("a_b")},
        {text("My-Dev.1,(x)"), text("My-Dev.1,(x)"), text("My-Dev.1,(x)")},
        {text("a  b   c"), text("a__b___c"), text("a__b___c")},
        {text("\t\n\r a\v\f"), text("a"), text("a")},
        {text("\xA0"
              "a\xA0"),
         text("a"), text("a")},
        {text("a\tb"), text("a\tb"), text("a\tb")},
        {text("=#;=#;"), {}, {}},
        {text("=a#b;c="), text("abc"), text("abc")},
        // Trimmed first: blanks next to a deleted character become underscores.
        {text("# a #"), text("_a_"), text("_a_")},
        {text("::a::b:"), text("::a::b:"), text("ab")},
        {text(":::"), text(":::"), {}},
        {euro + QChar(u' '), euro, euro},
        {zero, zero, zero},
        {QString(100'000, QChar(u':')) + QChar(u'x'), QString(100'000, QChar(u':')) + QChar(u'x'),
         text("x")},
    };
    Rows expected = this->rows();
    for (const auto& row : rows) {
        EXPECT_TRUE(m_model->setData(m_model->index(1, 0), row.typed));
        EXPECT_TRUE(m_model->setData(m_model->index(1, 1), row.typed, Qt::EditRole));
        expected[1] = {row.resource, row.alias};
        EXPECT_EQ(this->rows(), expected) << row.typed.toString().left(20).toStdString();
    }
}

} // namespace
