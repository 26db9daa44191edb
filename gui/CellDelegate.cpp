// SPDX-License-Identifier: MIT
#include "gui/CellDelegate.h"

#include "gui/TableStyle.h"

#include <QLineEdit>
#include <QStyle>

namespace gui {

namespace {

/// The distance of a line edit's text from the line edit's edge.
int ownMargin(const QLineEdit& edit)
{
    const int frame = edit.hasFrame()
                          ? edit.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, &edit)
                          : 0;
    return frame + 2;
}

} // namespace

QWidget* CellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const
{
    QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
    if (editor != nullptr) {
        editor->setAccessibleName(
            index.model()->headerData(index.column(), Qt::Horizontal).toString());
    }
    if (auto* edit = qobject_cast<QLineEdit*>(editor);
        edit != nullptr && option.widget != nullptr) {
        const int margin = TableStyle::textMargin(*option.widget) - ownMargin(*edit);
        edit->setTextMargins(margin, 0, margin, 0);
        // The editor grows with its text by this width, which it computed without these margins.
        edit->setMinimumWidth(edit->minimumWidth() + 2 * margin);
    }
    return editor;
}

} // namespace gui
