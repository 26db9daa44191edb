// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace gui {

/// Qt's delegate whose cell editors have the title of their column as accessible name.
class CellDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
};

} // namespace gui
