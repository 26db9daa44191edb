// SPDX-License-Identifier: MIT
// What the main window keeps over restarts.
#include "tests/gui/main_window/MainWindowCase.h"
#include "tests/gui/shared/SettingsCase.h"
#include "tests/gui/shared/WindowTest.h"

#include <optional>

class TestSettings : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void opensCentred();
    void opensAsItWasLeft();
    void opensMaximisedAgain();
    void savesWhenItIsDestroyed();
    void survivesBadValues_data();
    void survivesBadValues();

private:
    void setUp() override;
    void tearDown() override;
    std::optional<guitest::SettingsCase> m_settings;
};

void TestSettings::setUp()
{
    m_settings.emplace();
}

void TestSettings::tearDown()
{
    m_settings.reset();
}

void TestSettings::opensCentred()
{
    guitest::MainWindowCase windowCase(configuration());
    windowCase.show();
    QCOMPARE(windowCase.window().size(), QSize(600, 400));
    // The frame's corner: a place that is not stored is the one that the window has.
    QCOMPARE(windowCase.window().pos(), guitest::centred(QSize(600, 400)).topLeft());
    QVERIFY(!windowCase.window().isMaximized());
}

void TestSettings::opensAsItWasLeft()
{
    guitest::MainWindowCase windowCase(configuration());
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

void TestSettings::opensMaximisedAgain()
{
    guitest::MainWindowCase windowCase(configuration());
    windowCase.show();
    windowCase.window().showMaximized();
    QVERIFY(windowCase.window().isMaximized());
    windowCase.destroy();
    const gui::MainWindow window(nullptr);
    QVERIFY(window.isVisible());
    QVERIFY(window.isMaximized());
}

void TestSettings::savesWhenItIsDestroyed()
{
    guitest::MainWindowCase windowCase(configuration());
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

void TestSettings::survivesBadValues_data()
{
    guitest::addOtherKinds();
}

void TestSettings::survivesBadValues()
{
    QFETCH(QVariant, value);
    guitest::MainWindowCase windowCase(configuration(), "A=ASRL1::INSTR\n");
    for (const char* key : {"size", "pos", "fullscreen"}) {
        guitest::store(QStringLiteral("MainWindow"), key, value);
    }
    windowCase.show();
    QVERIFY(windowCase.window().isVisible());
    QVERIFY(windowCase.window().width() >= windowCase.window().minimumSizeHint().width());
    QVERIFY(windowCase.window().height() >= windowCase.window().minimumSizeHint().height());
}

static const guitest::Registration<TestSettings> s_registration;
#include "TestSettings.moc"
