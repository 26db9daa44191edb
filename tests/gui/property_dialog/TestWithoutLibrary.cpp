// SPDX-License-Identifier: MIT
#include "tests/gui/property_dialog/PropertyDialogCase.h"
#include "tests/gui/shared/RecordTexts.h"
#include "tests/gui/shared/WindowTest.h"

#include <QLineEdit>

using guitest::PropertyDialogCase;

/// The dialog on a machine without a VISA library. A process looks for one only once, so these
/// cases have a program of their own, which is not pointed at the stand-in.
class TestWithoutLibrary : public guitest::WindowTest
{
    Q_OBJECT

public:
    TestWithoutLibrary() : WindowTest(Visa::None) {}

private slots:
    void hasNoPorts();
    void keepsWhatThePortsHave();
    void editsTheProvider();
};

void TestWithoutLibrary::hasNoPorts()
{
    PropertyDialogCase test("resource ASRL1::INSTR\n");
    test.open();
    QCOMPARE(test.combo("comboBoxSerialInterface").count(), 0);
    QVERIFY(!test.widget<QWidget>("tabAsrlProperties").isEnabled());
    QCOMPARE(test.combo("comboBoxQvBaudrate").count(), 16);
    QVERIFY(test.bench().calls().empty());
}

void TestWithoutLibrary::keepsWhatThePortsHave()
{
    PropertyDialogCase test;
    test.havePorts({{1, {300, 7, 2, 1, 4}}});
    test.open();
    test.clickOk();
    QCOMPARE(guitest::text(test.model().getSerialProperties()), QStringLiteral("1=300,7,2,1,4"));
    QVERIFY(!test.model().isDirty());
}

void TestWithoutLibrary::editsTheProvider()
{
    PropertyDialogCase test;
    test.open();
    test.widget<QTabWidget>("tabWidget").setCurrentIndex(1);
    auto& field = test.widget<QLineEdit>("providerEdit");
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, QStringLiteral("4095"));
    test.clickOk();
    QCOMPARE(int(test.model().getProvider()), 4095);
}

static const guitest::Registration<TestWithoutLibrary> s_registration;

#include "TestWithoutLibrary.moc"
