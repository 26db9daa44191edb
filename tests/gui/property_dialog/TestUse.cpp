// SPDX-License-Identifier: MIT
// The properties dialog in a user's hands: where clicks and keys lead, and which tab opens.
#include "tests/gui/common/Settings.h"
#include "tests/gui/property_dialog/PropertyDialogTest.h"
#include "tests/support/ModalWindows.h"

#include <QPushButton>
#include <QTabWidget>
#include <QTextDocument>
#include <QWindow>

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

    void longPortNamesDoNotWidenTheDialog()
    {
        const QSize size = open(s_twoPorts).size();
        QSettings().clear();
        destroy();
        QSettings().clear();
        QCOMPARE(open("resource ASRL" + std::string(250, 'W') + " interface=ASRL,1\n").size(),
                 size);
    }

    void storedTabIsAppliedToFourTabs_data()
    {
        columns<QVariant, QByteArray>("index", "page");
        const QByteArray ports = "tabAsrlProperties";
        const QByteArray provider = "tabSpecialProperties";
        // The tab after a removed one becomes the current one.
        QTest::newRow("none") << QVariant() << ports;
        QTest::newRow("conflict manager") << QVariant(0) << ports;
        QTest::newRow("serial ports") << QVariant(1) << ports;
        QTest::newRow("boards") << QVariant(2) << provider;
        QTest::newRow("provider") << QVariant(3) << provider;
        QTest::newRow("past the last") << QVariant(4) << ports;
    }

    void storedTabIsAppliedToFourTabs()
    {
        QFETCH(const QVariant, index);
        QFETCH(const QByteArray, page);
        if (index.isValid()) {
            store("tabindex", index);
        }
        open(s_twoPorts);
        QVERIFY(widget<QWidget>(page.constData()).isVisible());
        QCOMPARE(widget<QTabWidget>("tabWidget").currentWidget(),
                 &widget<QWidget>(page.constData()));
    }

    void maximisedDialogIsModalFromItsConstructor()
    {
        QWidget other;
        other.show();
        store("fullscreen", true);
        construct(s_twoPorts);
        QVERIFY(dialog().isVisible());
        QVERIFY(dialog().isMaximized());
        QCOMPARE(QGuiApplication::modalWindow(), dialog().windowHandle());
        QCOMPARE(QApplication::activeModalWidget(), &dialog());
        for (const char* hidden : {"tabConfMang", "tabGpibProperties", "groupBoxOs"}) {
            QVERIFY2(!widget<QWidget>(hidden).isVisible(), hidden);
        }
        QVERIFY(widget<QWidget>("tabAsrlProperties").isVisible());

        const support::ModalAnswer<gui::PropertyDialog> modal(
            [this](gui::PropertyDialog&) { clickOk(); });
        QCOMPARE(dialog().exec(), int{QDialog::Accepted});
        QVERIFY(modal.wasShown());
        QVERIFY(!dialog().isVisible());
        QCOMPARE(QGuiApplication::modalWindow(), static_cast<QWindow*>(nullptr));
    }

private:
    static void store(const char* key, const QVariant& value)
    {
        guitest::store(QStringLiteral("PropertyDialog"), key, value);
    }
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
