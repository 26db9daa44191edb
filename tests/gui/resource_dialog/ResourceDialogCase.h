// SPDX-License-Identifier: MIT
#pragma once

#include "gui/ResourceDialog.h"
#include "tests/support/Children.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QToolButton>

namespace guitest {

/// What one case of the find dialog's tests stands on: no stored settings and a dialog that is not
/// shown yet.
class ResourceDialogCase
{
public:
    ResourceDialogCase() : m_dialog((QSettings().clear(), nullptr)) {}

    gui::ResourceDialog& dialog() { return m_dialog; }
    QListWidget& list() const { return support::child<QListWidget>(m_dialog, "rsrcList"); }
    QToolButton& refresh() const { return support::child<QToolButton>(m_dialog, "refreshButton"); }
    QDialogButtonBox& box() const
    {
        return support::child<QDialogButtonBox>(m_dialog, "buttonBox");
    }

    /// All that the dialog lists, parted by blanks.
    QString listed() const
    {
        QStringList texts;
        for (int row = 0; row < list().count(); ++row) {
            texts.append(list().item(row)->text());
        }
        return texts.join(QLatin1Char(' '));
    }

    void show()
    {
        m_dialog.show();
        QApplication::setActiveWindow(&m_dialog);
    }
    void click(QDialogButtonBox::StandardButton button) const
    {
        QTest::mouseClick(box().button(button), Qt::LeftButton);
    }
    void clickRefresh() const { QTest::mouseClick(&refresh(), Qt::LeftButton); }
    void clickRow(int row) const
    {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(row));
    }
    void doubleClick(const QPoint& place) const
    {
        // As a hand does it: the first click of the two selects.
        QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, Qt::NoModifier, place);
    }
    QPoint placeOf(int row) const { return list().visualItemRect(list().item(row)).center(); }

private:
    gui::ResourceDialog m_dialog;
};

} // namespace guitest
