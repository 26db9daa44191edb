// SPDX-License-Identifier: MIT
// The main window on a machine without a VISA library.
#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "tests/gui/GuiTestMain.h"
#include "tests/gui/MainWindowCase.h"
#include "tests/support/ModalWindows.h"
#include "tests/support/QtWarnings.h"
#include "visa/VisaLibrary.h"

#include <QListWidget>
#include <QToolButton>

#include <optional>

class TestMainWindowWithoutLibrary : public QObject
{
    Q_OBJECT

public:
    explicit TestMainWindowWithoutLibrary(support::ConfigurationFixture& configuration)
        : m_configuration(configuration)
    {}

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void editsAndSaves();
    void findsNothing();

private:
    support::ConfigurationFixture& m_configuration;
    std::optional<support::QtWarnings> m_warnings;
    std::optional<guitest::MainWindowCase> m_case;
};

void TestMainWindowWithoutLibrary::initTestCase()
{
    if (visa::VisaLibrary::instance().isFound()) {
        QSKIP("this machine has a VISA library of its own");
    }
}

void TestMainWindowWithoutLibrary::init()
{
    m_warnings.emplace();
    m_case.emplace(m_configuration, "A=ASRL1::INSTR\n");
    m_case->show();
}

void TestMainWindowWithoutLibrary::cleanup()
{
    m_case.reset();
    const QStringList warnings = m_warnings->all();
    m_warnings.reset();
    QCOMPARE(warnings, QStringList());
}

void TestMainWindowWithoutLibrary::editsAndSaves()
{
    m_case->editCell(0, 1, "B");
    m_case->click("actionSave");
    QCOMPARE(m_configuration.read(),
             support::ConfigurationFixture::header() + ":Provider=3674\nB=ASRL1::INSTR\n");
    const support::ModalAnswer<gui::PropertyDialog> properties(
        [](gui::PropertyDialog& dialog) { dialog.accept(); });
    m_case->click("actionEdit_properties");
    QVERIFY(properties.wasShown());
    m_case->click("actionClose");
    QVERIFY(!m_case->window().isVisible());
}

void TestMainWindowWithoutLibrary::findsNothing()
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

int main(int argc, char* argv[])
{
    return guitest::run<TestMainWindowWithoutLibrary>(argc, argv);
}
#include "TestMainWindowWithoutLibrary.moc"
