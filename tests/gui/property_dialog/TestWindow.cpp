// SPDX-License-Identifier: MIT
// The properties dialog as a window: size, position, open tab, and what it restores of them.
#include "tests/gui/common/CutOff.h"
#include "tests/gui/common/FontSize.h"
#include "tests/gui/common/Settings.h"
#include "tests/gui/property_dialog/PropertyDialogTest.h"
#include "tests/support/ModalWindows.h"

#include <QWindow>

class TestWindow : public guitest::PropertyDialogTest
{
    Q_OBJECT

private slots:
    void withoutSettingsOpensCentred()
    {
        construct(s_twoPorts);
        QCOMPARE(dialog().size(), QSize(697, 348));
        QCOMPARE(dialog().geometry().topLeft(), guitest::centred(QSize(697, 348)).topLeft());
        QVERIFY(!dialog().isMaximized());
        QVERIFY(!dialog().isVisible());
    }

    void noTextIsCutOff_data()
    {
        columns<int, int>("pixels", "tab");
        QTest::newRow("serial ports") << int{guitest::FontSize::usual} << 0;
        QTest::newRow("provider") << int{guitest::FontSize::usual} << 1;
        QTest::newRow("serial ports, double font size") << 2 * guitest::FontSize::usual << 0;
        QTest::newRow("provider, double font size") << 2 * guitest::FontSize::usual << 1;
    }

    void noTextIsCutOff()
    {
        QFETCH(const int, pixels);
        QFETCH(const int, tab);
        const guitest::FontSize fontSize(pixels);
        open(s_twoPorts);
        widget<QTabWidget>("tabWidget").setCurrentIndex(tab);
        QCOMPARE(guitest::cutOffParts(dialog(), 5), QStringList());
        // Nor at the smallest size that the dialog allows.
        dialog().resize(1, 1);
        QCOMPARE(guitest::cutOffParts(dialog(), 5), QStringList());
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

    void restoresSizeAndPosition()
    {
        store("size", QSize(780, 620));
        store("pos", QPoint(12, 34));
        open(s_twoPorts);
        QCOMPARE(dialog().size(), QSize(780, 620));
        QCOMPARE(dialog().pos(), QPoint(12, 34));
    }

    void destructorWritesTheSettings()
    {
        open(s_twoPorts);
        dialog().resize(790, 630);
        dialog().move(21, 43);
        widget<QTabWidget>("tabWidget").setCurrentIndex(1);
        clickOk();
        QVERIFY(QSettings().allKeys().isEmpty());
        destroy();
        QCOMPARE(settingsFile(), QStringLiteral("[PropertyDialog]\n"
                                                "fullscreen=false\n"
                                                "pos=@Point(21 43)\n"
                                                "size=@Size(790 630)\n"
                                                "tabindex=1\n"));
        // Of four tabs, index 1 is that of the serial ports.
        open(s_twoPorts);
        QCOMPARE(widget<QTabWidget>("tabWidget").currentIndex(), 0);
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
        QTest::newRow("negative") << QVariant(-1) << ports;
        QTest::newRow("no number") << QVariant(QStringLiteral("x")) << ports;
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
        destroy();
        QVERIFY(guitest::stored(QStringLiteral("PropertyDialog"), "fullscreen").toBool());
    }

    void maximisedDialogReturnsTheAnswer_data()
    {
        columns<int, int>("button", "result");
        QTest::newRow("OK") << int{QDialogButtonBox::Ok} << int{QDialog::Accepted};
        QTest::newRow("Cancel") << int{QDialogButtonBox::Cancel} << int{QDialog::Rejected};
    }

    void maximisedDialogReturnsTheAnswer()
    {
        QFETCH(const int, button);
        store("fullscreen", true);
        construct(s_twoPorts);
        const support::ModalAnswer<gui::PropertyDialog> modal([button](gui::PropertyDialog& shown) {
            guitest::clickButton(shown, static_cast<QDialogButtonBox::StandardButton>(button));
        });
        QTEST(dialog().exec(), "result");
        QVERIFY(modal.wasShown());
        QVERIFY(!dialog().isVisible());
        QCOMPARE(QGuiApplication::modalWindow(), static_cast<QWindow*>(nullptr));
    }

private:
    static void store(const char* key, const QVariant& value)
    {
        guitest::store(QStringLiteral("PropertyDialog"), key, value);
    }
};

static const guitest::Registration<TestWindow> s_registerWindow;
#include "TestWindow.moc"
