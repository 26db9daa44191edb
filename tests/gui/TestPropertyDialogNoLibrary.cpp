// SPDX-License-Identifier: MIT
#include "tests/gui/GuiTestMain.h"
#include "tests/gui/PropertyDialogCase.h"
#include "tests/gui/RecordTexts.h"
#include "tests/support/QtWarnings.h"
#include "visa/VisaLibrary.h"

#include <QLineEdit>

using guitest::PropertyDialogCase;

/// The dialog on a machine without a VISA library. A process looks for one only once, so these
/// cases have a program of their own, which is not pointed at the stand-in.
class TestPropertyDialogNoLibrary : public QObject
{
    Q_OBJECT

public:
    explicit TestPropertyDialogNoLibrary(support::ConfigurationFixture&) {}

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void hasNoPorts();
    void keepsWhatThePortsHave();
    void editsTheProvider();

private:
    std::unique_ptr<support::QtWarnings> m_warnings;
};

void TestPropertyDialogNoLibrary::initTestCase()
{
    if (visa::VisaLibrary::instance().isFound()) {
        QSKIP("this machine has a VISA library of its own");
    }
}

void TestPropertyDialogNoLibrary::init()
{
    m_warnings = std::make_unique<support::QtWarnings>();
}

void TestPropertyDialogNoLibrary::cleanup()
{
    QCOMPARE(m_warnings->all(), QStringList());
    m_warnings.reset();
}

void TestPropertyDialogNoLibrary::hasNoPorts()
{
    PropertyDialogCase test("resource ASRL1::INSTR\n");
    test.open();
    QCOMPARE(test.combo("comboBoxSerialInterface").count(), 0);
    QVERIFY(!test.widget<QWidget>("tabAsrlProperties").isEnabled());
    QCOMPARE(test.combo("comboBoxQvBaudrate").count(), 16);
    QVERIFY(test.bench().calls().empty());
}

void TestPropertyDialogNoLibrary::keepsWhatThePortsHave()
{
    PropertyDialogCase test;
    test.havePorts({{1, {300, 7, 2, 1, 4}}});
    test.open();
    test.clickOk();
    QCOMPARE(guitest::text(test.model().getSerialProperties()), QStringLiteral("1=300,7,2,1,4"));
    QVERIFY(!test.model().isDirty());
}

void TestPropertyDialogNoLibrary::editsTheProvider()
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

int main(int argc, char* argv[])
{
    return guitest::run<TestPropertyDialogNoLibrary>(argc, argv);
}

#include "TestPropertyDialogNoLibrary.moc"
