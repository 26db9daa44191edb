// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace gui {

/// Qt's delegate, but the editor of a cell tells a screen reader its column's title.
class CellDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
};

} // namespace gui
