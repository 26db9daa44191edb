// SPDX-License-Identifier: MIT
#include "gui/SelectAllOnFocus.h"

#include <QFocusEvent>
#include <QLineEdit>

namespace gui {

namespace {

/// A window that becomes active again only gives the focus back: the user may be typing.
bool isEntered(Qt::FocusReason reason)
{
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
}

} // namespace

SelectAllOnFocus::SelectAllOnFocus(QLineEdit& edit) : QObject(&edit), m_edit(edit)
{
    m_edit.installEventFilter(this);
}

bool SelectAllOnFocus::eventFilter(QObject*, QEvent* event)
{
    // Queued: the line edit handles the event first, and a click sets the cursor after the focus.
    if (event->type() == QEvent::FocusIn && isEntered(static_cast<QFocusEvent*>(event)->reason())) {
        QMetaObject::invokeMethod(&m_edit, &QLineEdit::selectAll, Qt::QueuedConnection);
    } else if (event->type() == QEvent::MouseButtonPress) {
        QMetaObject::invokeMethod(this, &SelectAllOnFocus::moveCursorToText, Qt::QueuedConnection);
    }
    return false;
}

void SelectAllOnFocus::moveCursorToText()
{
    QString shown = m_edit.displayText();
    while (shown.endsWith(QLatin1Char(' '))) {
        shown.chop(1);
    }
    if (!m_edit.hasSelectedText() && m_edit.cursorPosition() > shown.size()) {
        m_edit.setCursorPosition(shown.size());
    }
}

} // namespace gui
