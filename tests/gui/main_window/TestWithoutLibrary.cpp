// SPDX-License-Identifier: MIT
// The main window on a machine without a VISA library.
#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "tests/gui/main_window/MainWindowTest.h"

#include <QToolButton>

class TestWithoutLibrary : public guitest::MainWindowTest
{
    Q_OBJECT

public:
    TestWithoutLibrary() : MainWindowTest(Visa::None) {}

private slots:
    void editsAndSaves()
    {
        editCell(0, 1, "B");
        click("actionSave");
        QCOMPARE(configuration().read(), file(":Provider=3674\nB=ASRL1::INSTR\n"));
        clickAndAnswer<gui::PropertyDialog>("actionEdit_properties",
                                            [](gui::PropertyDialog& dialog) { dialog.accept(); });
        click("actionClose");
        QVERIFY(!window().isVisible());
    }

    void findsNothing()
    {
        clickCell(0, 0);
        clickAndAnswer<gui::ResourceDialog>("actionFind", [](gui::ResourceDialog& dialog) {
            const auto& list = support::child<QListWidget>(dialog, "rsrcList");
            QCOMPARE(list.count(), 0);
            QTest::mouseClick(&support::child<QToolButton>(dialog, "refreshButton"),
                              Qt::LeftButton);
            QCOMPARE(list.count(), 0);
            dialog.reject();
        });
        QCOMPARE(text(0, 0), QStringLiteral("ASRL1::INSTR"));
    }

private:
    void setUp() override { start("A=ASRL1::INSTR\n"); }
};

static const guitest::Registration<TestWithoutLibrary> s_registerWithoutLibrary;
#include "TestWithoutLibrary.moc"
