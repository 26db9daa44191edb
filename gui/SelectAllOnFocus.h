// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QLineEdit;

namespace gui {

/// Selects the whole text of a line edit when the user goes to it, by mouse or keyboard, so that
/// typing replaces it. Later clicks beyond the text put the cursor at its end: with an input mask,
/// Qt would put it where nothing can be typed. Owned by the line edit. GUI thread only.
class SelectAllOnFocus : public QObject
{
    Q_OBJECT

public:
    explicit SelectAllOnFocus(QLineEdit& edit);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void moveCursorToText();

    QLineEdit& m_edit;
};

} // namespace gui
