// SPDX-License-Identifier: MIT
// The properties dialog in a user's hands: where clicks and keys lead.
#include "tests/gui/property_dialog/PropertyDialogTest.h"

#include <QPushButton>
#include <QTextDocument>

class TestUse : public guitest::PropertyDialogTest
{
    Q_OBJECT

private slots:
    void typingReplacesTheProviderAfterAClick_data()
    {
        QTest::addColumn<bool>("isBeyond");
        QTest::newRow("on the number") << false;
        QTest::newRow("right of the number") << true;
    }

    void typingReplacesTheProviderAfterAClick()
    {
        QFETCH(const bool, isBeyond);
        QLineEdit& provider = openProvider(3674);
        QTest::mouseClick(&provider, Qt::LeftButton, Qt::NoModifier,
                          QPoint(isBeyond ? provider.width() - 4 : 12, provider.height() / 2));
        QTRY_COMPARE(provider.selectedText().trimmed(), QStringLiteral("3674"));
        QTest::keyClicks(&provider, QStringLiteral("42"));
        QCOMPARE(provider.text(), QStringLiteral("42"));
        QCOMPARE(int{dialog().getProvider()}, 42);
    }

    void typingReplacesTheProviderAfterTab()
    {
        QLineEdit& provider = openProvider(3674);
        widget<QTabWidget>("tabWidget").setFocus();
        for (int i = 0; i < 10 && !provider.hasFocus(); ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QVERIFY(provider.hasFocus());
        QTRY_COMPARE(provider.selectedText().trimmed(), QStringLiteral("3674"));
        QTest::keyClicks(&provider, QStringLiteral("42"));
        QCOMPARE(int{dialog().getProvider()}, 42);
    }

    void secondClickBeyondTheProviderLetsTypingAppend()
    {
        QLineEdit& provider = openProvider(367);
        provider.setFocus(Qt::MouseFocusReason);
        QTRY_VERIFY(provider.hasSelectedText());
        QTest::mouseClick(&provider, Qt::LeftButton, Qt::NoModifier,
                          QPoint(provider.width() - 4, provider.height() / 2));
        QTRY_COMPARE(provider.cursorPosition(), 3);
        QTest::keyClicks(&provider, QStringLiteral("42"));
        QCOMPARE(provider.text(), QStringLiteral("36742"));
    }

    void activeAgainWindowKeepsTheProvidersCursor()
    {
        QLineEdit& provider = openProvider(3674);
        provider.setFocus(Qt::MouseFocusReason);
        QTRY_VERIFY(provider.hasSelectedText());
        provider.deselect();
        provider.setCursorPosition(2);
        QFocusEvent again(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
        QCoreApplication::sendEvent(&provider, &again);
        QCoreApplication::processEvents();
        QVERIFY(!provider.hasSelectedText());
    }

    void returnAfterSetDefaultPressesOk()
    {
        open(s_onePort);
        auto& button = widget<QPushButton>("btnDefaultQv");
        button.setFocus();
        QTest::keyClick(&button, Qt::Key_Space);
        QVERIFY(dialog().isVisible());
        QTest::keyClick(&button, Qt::Key_Return);
        QVERIFY(!dialog().isVisible());
        QCOMPARE(dialog().result(), int{QDialog::Accepted});
        QVERIFY(!widget<QPushButton>("btnDefaultOs").autoDefault());
    }

    void portListShowsTheWholeNameAsToolTip()
    {
        const QString longName = QStringLiteral(
            "ASRL::/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0::INSTR");
        open("resource \"" + longName.toStdString() + "\"\nresource \"ASRL2::<b>::INSTR\"\n");
        QComboBox& list = combo("comboBoxSerialInterface");
        const auto plain = [](const QString& toolTip) {
            QTextDocument document;
            document.setHtml(toolTip);
            return document.toPlainText();
        };
        QVERIFY(list.width() < list.fontMetrics().horizontalAdvance(longName));
        QCOMPARE(plain(list.toolTip()), longName);
        QCOMPARE(plain(list.itemData(0, Qt::ToolTipRole).toString()), longName);
        // Never taken as rich text.
        list.setCurrentIndex(1);
        QCOMPARE(plain(list.toolTip()), QStringLiteral("ASRL2::<b>::INSTR"));
    }

private:
    QLineEdit& openProvider(unsigned short provider)
    {
        setProvider(provider);
        open(s_onePort);
        widget<QTabWidget>("tabWidget").setCurrentIndex(1);
        return widget<QLineEdit>("providerEdit");
    }
};

static const guitest::Registration<TestUse> s_registerUse;
#include "TestUse.moc"
