// SPDX-License-Identifier: MIT
// What the main window keeps over restarts.
#include "tests/gui/GuiTestMain.h"
#include "tests/gui/MainWindowCase.h"
#include "tests/gui/SettingsCase.h"
#include "tests/support/QtWarnings.h"

#include <optional>

class TestMainWindowSettings : public QObject
{
    Q_OBJECT

public:
    explicit TestMainWindowSettings(support::ConfigurationFixture& configuration)
        : m_configuration(configuration)
    {}

private slots:
    void init();
    void cleanup();

    void opensCentred();
    void opensAsItWasLeft();
    void opensMaximisedAgain();
    void savesWhenItIsDestroyed();
    void survivesBadValues_data();
    void survivesBadValues();

private:
    support::ConfigurationFixture& m_configuration;
    std::optional<support::QtWarnings> m_warnings;
    std::optional<guitest::SettingsCase> m_settings;
};

void TestMainWindowSettings::init()
{
    m_warnings.emplace();
    m_settings.emplace();
}

void TestMainWindowSettings::cleanup()
{
    m_settings.reset();
    const QStringList warnings = m_warnings->all();
    m_warnings.reset();
    QCOMPARE(warnings, QStringList());
}

void TestMainWindowSettings::opensCentred()
{
    guitest::MainWindowCase windowCase(m_configuration);
    windowCase.show();
    QCOMPARE(windowCase.window().size(), QSize(600, 400));
    // The frame's corner: a place that is not stored is the one that the window has.
    QCOMPARE(windowCase.window().pos(), guitest::centred(QSize(600, 400)).topLeft());
    QVERIFY(!windowCase.window().isMaximized());
}

void TestMainWindowSettings::opensAsItWasLeft()
{
    guitest::MainWindowCase windowCase(m_configuration);
    windowCase.show();
    windowCase.window().resize(640, 333);
    windowCase.window().move(21, 43);
    windowCase.show();
    QCOMPARE(windowCase.window().size(), QSize(640, 333));
    QCOMPARE(windowCase.window().pos(), QPoint(21, 43));
    QVERIFY(!windowCase.window().isMaximized());
    // The bounds of the screen are not asked.
    windowCase.window().move(-4000, 6000);
    windowCase.show();
    QCOMPARE(windowCase.window().pos(), QPoint(-4000, 6000));
}

void TestMainWindowSettings::opensMaximisedAgain()
{
    guitest::MainWindowCase windowCase(m_configuration);
    windowCase.show();
    windowCase.window().showMaximized();
    QVERIFY(windowCase.window().isMaximized());
    windowCase.destroy();
    const gui::MainWindow window(nullptr);
    QVERIFY(window.isVisible());
    QVERIFY(window.isMaximized());
}

void TestMainWindowSettings::savesWhenItIsDestroyed()
{
    guitest::MainWindowCase windowCase(m_configuration);
    windowCase.show();
    windowCase.window().move(7, 8);
    windowCase.click("actionClose");
    QCOMPARE(QSettings().allKeys(), QStringList());
    windowCase.destroy();
    QCOMPARE(m_settings->file(), QStringLiteral("[MainWindow]\n"
                                                "fullscreen=false\n"
                                                "pos=@Point(7 8)\n"
                                                "size=@Size(600 400)\n"));
}

void TestMainWindowSettings::survivesBadValues_data()
{
    guitest::addOtherKinds();
}

void TestMainWindowSettings::survivesBadValues()
{
    QFETCH(QVariant, value);
    guitest::MainWindowCase windowCase(m_configuration, "A=ASRL1::INSTR\n");
    for (const char* key : {"size", "pos", "fullscreen"}) {
        guitest::store(QStringLiteral("MainWindow"), key, value);
    }
    windowCase.show();
    QVERIFY(windowCase.window().isVisible());
    QVERIFY(windowCase.window().width() >= windowCase.window().minimumSizeHint().width());
    QVERIFY(windowCase.window().height() >= windowCase.window().minimumSizeHint().height());
}

int main(int argc, char* argv[])
{
    return guitest::run<TestMainWindowSettings>(argc, argv);
}
#include "TestMainWindowSettings.moc"
