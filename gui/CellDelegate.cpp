// SPDX-License-Identifier: MIT
#include "gui/CellDelegate.h"

#include <QWidget>

namespace gui {

QWidget* CellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const
{
    QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
    if (editor != nullptr) {
        editor->setAccessibleName(
            index.model()->headerData(index.column(), Qt::Horizontal).toString());
    }
    return editor;
}

} // namespace gui
