// SPDX-License-Identifier: MIT
#pragma once

#include "gui/RsrcStringEditor.h"
#include "tests/support/Children.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QSettings>
#include <QTest>

namespace guitest {

/// What one case of the composer's tests stands on: no stored settings and a composer on the
/// screen, worked by keys.
class ComposerCase
{
public:
    ComposerCase() : m_editor((QSettings().clear(), nullptr))
    {
        m_editor.show();
        QApplication::setActiveWindow(&m_editor);
    }

    gui::RsrcStringEditor& editor() { return m_editor; }

    template <typename Widget>
    Widget& widget(const char* name) const
    {
        return support::child<Widget>(m_editor, name);
    }
    QLineEdit& edit(const char* name) const { return widget<QLineEdit>(name); }
    QComboBox& types() const { return widget<QComboBox>("IfcComboBox"); }

    QString text(const char* name) const { return edit(name).text(); }
    QString resource() const { return text("RsrcEdit"); }
    bool isShown(const char* name) const { return widget<QWidget>(name).isVisible(); }

    /// Chooses the interface at that position of the list.
    void choose(int index) const
    {
        QTest::keyClick(&types(), Qt::Key_Home);
        for (int i = 0; i < index; ++i) {
            QTest::keyClick(&types(), Qt::Key_Down);
        }
    }

    /// Types the text key by key in place of what the field holds.
    void type(const char* name, const QString& text) const
    {
        erase(name);
        for (const QChar character : text) {
            // Qt Test knows keys for ASCII alone.
            const bool hasKey = character.unicode() < 0x80;
            QTest::sendKeyEvent(QTest::Click, &edit(name),
                                hasKey ? QTest::asciiToKey(character.toLatin1()) : Qt::Key_unknown,
                                QString(character), Qt::NoModifier);
        }
    }
    void type(const char* name, const char* text) const { type(name, QString::fromUtf8(text)); }

    void erase(const char* name) const
    {
        edit(name).selectAll();
        QTest::keyClick(&edit(name), Qt::Key_Delete);
    }

private:
    gui::RsrcStringEditor m_editor;
};

} // namespace guitest
