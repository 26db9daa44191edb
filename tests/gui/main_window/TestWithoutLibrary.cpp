// SPDX-License-Identifier: MIT
// The main window on a machine without a VISA library.
#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "tests/gui/main_window/MainWindowCase.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/ModalWindows.h"

#include <QListWidget>
#include <QToolButton>

#include <optional>

class TestWithoutLibrary : public guitest::WindowTest
{
    Q_OBJECT

public:
    TestWithoutLibrary() : WindowTest(Visa::None) {}

private slots:
    void editsAndSaves();
    void findsNothing();

private:
    void setUp() override;
    void tearDown() override;
    std::optional<guitest::MainWindowCase> m_case;
};

void TestWithoutLibrary::setUp()
{
    m_case.emplace(configuration(), "A=ASRL1::INSTR\n");
    m_case->show();
}

void TestWithoutLibrary::tearDown()
{
    m_case.reset();
}

void TestWithoutLibrary::editsAndSaves()
{
    m_case->editCell(0, 1, "B");
    m_case->click("actionSave");
    QCOMPARE(configuration().read(),
             support::ConfigurationFixture::header() + ":Provider=3674\nB=ASRL1::INSTR\n");
    const support::ModalAnswer<gui::PropertyDialog> properties(
        [](gui::PropertyDialog& dialog) { dialog.accept(); });
    m_case->click("actionEdit_properties");
    QVERIFY(properties.wasShown());
    m_case->click("actionClose");
    QVERIFY(!m_case->window().isVisible());
}

void TestWithoutLibrary::findsNothing()
{
    m_case->clickCell(0, 0);
    const support::ModalAnswer<gui::ResourceDialog> answer([](gui::ResourceDialog& dialog) {
        const auto& list = support::child<QListWidget>(dialog, "rsrcList");
        QCOMPARE(list.count(), 0);
        QTest::mouseClick(&support::child<QToolButton>(dialog, "refreshButton"), Qt::LeftButton);
        QCOMPARE(list.count(), 0);
        dialog.reject();
    });
    m_case->click("actionFind");
    QVERIFY(answer.wasShown());
    QCOMPARE(m_case->text(0, 0), QStringLiteral("ASRL1::INSTR"));
}

static const guitest::Registration<TestWithoutLibrary> s_registration;
#include "TestWithoutLibrary.moc"
