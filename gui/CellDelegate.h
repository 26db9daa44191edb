// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace gui {

/// Qt's delegate whose cell editors have the title of their column as accessible name and keep the
/// text in its place.
class CellDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
};

} // namespace gui
