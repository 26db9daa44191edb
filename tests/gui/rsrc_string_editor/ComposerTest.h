// SPDX-License-Identifier: MIT
#pragma once

#include "gui/RsrcStringEditor.h"
#include "tests/gui/common/Dialogs.h"
#include "tests/gui/common/WindowTest.h"
#include "tests/support/Children.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

#include <memory>

namespace guitest {

/// Base of the composer's tests: a composer on the screen, used by keys.
class ComposerTest : public WindowTest
{
protected:
    /// Positions in the list of interfaces.
    enum Interface
    {
        Vxi11,
        HiSlip,
        Socket,
        Qvib,
        Usb,
        Serial
    };

    void setUp() override { open(); }
    void tearDown() override { m_editor.reset(); }

    /// A new composer in place of the one before.
    void open()
    {
        m_editor.reset();
        m_editor = std::make_unique<gui::RsrcStringEditor>(nullptr);
        m_editor->show();
        QApplication::setActiveWindow(m_editor.get());
    }

    gui::RsrcStringEditor& editor() const { return *m_editor; }
    template <typename Widget>
    Widget& widget(const char* name) const
    {
        return support::child<Widget>(*m_editor, name);
    }
    QLineEdit& edit(const char* name) const { return widget<QLineEdit>(name); }
    QComboBox& types() const { return widget<QComboBox>("IfcComboBox"); }

    QString text(const char* name) const { return edit(name).text(); }
    QString resource() const { return text("RsrcEdit"); }
    void setResource(const char* resource) const
    {
        m_editor->setRsrcString(QString::fromLatin1(resource));
    }

    /// Chooses the interface at that position by keys.
    void choose(int type) const
    {
        QTest::keyClick(&types(), Qt::Key_Home);
        for (int step = 0; step < type; ++step) {
            QTest::keyClick(&types(), Qt::Key_Down);
        }
    }

    /// Replaces the field's text, one key for each character.
    void type(const char* name, const QString& text) const
    {
        edit(name).selectAll();
        QTest::keyClick(&edit(name), Qt::Key_Delete);
        for (const QChar character : text) {
            // Qt Test knows the keys of ASCII only.
            const bool hasKey = character.unicode() < 0x80;
            QTest::sendKeyEvent(QTest::Click, &edit(name),
                                hasKey ? QTest::asciiToKey(character.toLatin1()) : Qt::Key_unknown,
                                QString(character), Qt::NoModifier);
        }
    }
    void type(const char* name, const char* text) const { type(name, QString::fromUtf8(text)); }

private:
    std::unique_ptr<gui::RsrcStringEditor> m_editor;
};

} // namespace guitest
