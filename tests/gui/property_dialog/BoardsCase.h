// SPDX-License-Identifier: MIT
#pragma once

#include "gui/DeviceItem.h"
#include "tests/gui/property_dialog/PropertyDialogCase.h"
#include "tests/gui/shared/RecordTexts.h"

#include <QLineEdit>
#include <QToolButton>
#include <QTreeWidget>

namespace guitest {

/// The dialog's tab for GPIB boards, put back and opened, with every row in sight.
class BoardsCase : public PropertyDialogCase
{
public:
    explicit BoardsCase(const QvVisa::GpibPropertiesMap& boards)
    {
        haveBoards(boards);
        open();
        showTab("tabGpibProperties");
        tree().expandAll();
    }

    QTreeWidget& tree() { return widget<QTreeWidget>("PropertyTree"); }
    QTreeWidgetItem* board(int row) { return tree().topLevelItem(row); }
    QTreeWidgetItem* fields(int row) { return board(row)->child(0); }

    /// Boards as the working copy has them: what OK hands over.
    QString boards()
    {
        dialog().accept();
        return text(model().getGpibProperties());
    }

    /// Opens the cell's editor with F2, types over what is there and ends with the key.
    void type(int row, int column, const QString& typed, Qt::Key end = Qt::Key_Return)
    {
        tree().setFocus();
        tree().setCurrentItem(fields(row), column);
        QTest::keyClick(&tree(), Qt::Key_F2);
        auto* editor = tree().viewport()->findChild<QLineEdit*>();
        QVERIFY(editor != nullptr);
        editor->selectAll();
        QTest::keyClick(editor, Qt::Key_Delete);
        QTest::keyClicks(editor, typed);
        QTest::keyClick(editor, end);
        QTRY_VERIFY(tree().viewport()->findChild<QLineEdit*>() == nullptr);
    }

    /// Clicks the check box of the board's row.
    void check(int row)
    {
        const QModelIndex index = tree().model()->index(0, DeviceItem::SystemControllerColumn,
                                                        tree().model()->index(row, 0));
        QStyleOptionViewItem option;
        option.initFrom(tree().viewport());
        option.rect = tree().visualRect(index);
        option.features = QStyleOptionViewItem::HasCheckIndicator;
        option.widget = &tree();
        const QRect box =
            tree().style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &tree());
        QTest::mouseClick(tree().viewport(), Qt::LeftButton, Qt::NoModifier, box.center());
    }

    /// Boards that have been drawn anew are no longer unfolded.
    bool isDrawnAnew() { return !board(0)->isExpanded(); }

    void clickButton(const char* name)
    {
        QTest::mouseClick(&widget<QToolButton>(name), Qt::LeftButton);
    }
};

} // namespace guitest
