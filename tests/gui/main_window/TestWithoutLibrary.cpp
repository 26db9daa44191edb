// SPDX-License-Identifier: MIT
// The main window on a machine without a VISA library.
#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "tests/gui/main_window/MainWindowTest.h"

#include <QComboBox>
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
        click("actionClose");
        QVERIFY(!window().isVisible());
    }

    void propertiesListNoPortsAndKeepTheirRecords()
    {
        start(":SerialProperty[DeviceNo=1].Baudrate=300\n");
        const QvVisa::SerialPropertiesMap ports = model().getSerialProperties();
        clickAndAnswer<gui::PropertyDialog>("actionEdit_properties", [](auto& dialog) {
            QCOMPARE(support::child<QComboBox>(dialog, "comboBoxSerialInterface").count(), 0);
            QVERIFY(!support::child<QWidget>(dialog, "tabAsrlProperties").isEnabled());
            support::child<QLineEdit>(dialog, "providerEdit").setText(QStringLiteral("4095"));
            dialog.accept();
        });
        QCOMPARE(int{model().getProvider()}, 4095);
        QVERIFY(ports.size() == 1 && model().getSerialProperties() == ports);
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
