// SPDX-License-Identifier: MIT
// The properties dialog on a machine without a VISA library.
#include "tests/gui/property_dialog/PropertyDialogTest.h"

class TestWithoutLibrary : public guitest::PropertyDialogTest
{
    Q_OBJECT

public:
    TestWithoutLibrary() : PropertyDialogTest(Visa::None) {}

private slots:
    void noPortsAreListed()
    {
        open(s_onePort);
        QCOMPARE(combo("comboBoxSerialInterface").count(), 0);
        QVERIFY(!widget<QWidget>("tabAsrlProperties").isEnabled());
        QCOMPARE(combo("comboBoxQvBaudrate").count(), 16);
        QVERIFY(bench().calls().empty());
    }

    void okStoresTheProviderAndKeepsThePorts()
    {
        setPorts({{1, {300, 7, 2, 1, 4}}});
        open();
        widget<QTabWidget>("tabWidget").setCurrentIndex(1);
        typeProvider(QStringLiteral("4095"));
        clickOk();
        QCOMPARE(int(model().getProvider()), 4095);
        QCOMPARE(ports(), QStringLiteral("1=300,7,2,1,4"));
    }
};

static const guitest::Registration<TestWithoutLibrary> s_registerWithoutLibrary;
#include "TestWithoutLibrary.moc"
