// SPDX-License-Identifier: MIT
// The size, position and state that the main window restores.
#include "tests/gui/common/Settings.h"
#include "tests/gui/main_window/MainWindowTest.h"

class TestSettings : public guitest::MainWindowTest
{
    Q_OBJECT

private slots:
    void withoutSettingsOpensCentred()
    {
        QCOMPARE(window().size(), QSize(600, 400));
        // The position of the frame: one that is not stored stays as centring set it.
        QCOMPARE(window().pos(), guitest::centred(QSize(600, 400)).topLeft());
        QVERIFY(!window().isMaximized());
    }

    void restoresSizeAndPosition()
    {
        window().resize(640, 333);
        window().move(21, 43);
        show();
        QCOMPARE(window().size(), QSize(640, 333));
        QCOMPARE(window().pos(), QPoint(21, 43));
        QVERIFY(!window().isMaximized());
        // Also off the screen.
        window().move(-4000, 6000);
        show();
        QCOMPARE(window().pos(), QPoint(-4000, 6000));
    }

    void maximisedWindowOpensMaximised()
    {
        window().showMaximized();
        destroy();
        const gui::MainWindow next(nullptr);
        QVERIFY(next.isVisible());
        QVERIFY(next.isMaximized());
    }

    void destructorWritesTheSettings()
    {
        window().move(7, 8);
        click("actionClose");
        QCOMPARE(QSettings().allKeys(), QStringList());
        destroy();
        QCOMPARE(settingsFile(), QStringLiteral("[MainWindow]\n"
                                                "fullscreen=false\n"
                                                "pos=@Point(7 8)\n"
                                                "size=@Size(600 400)\n"));
    }

    void valuesOfOtherTypesLeaveAUsableWindow_data() { guitest::addValuesOfOtherTypes(); }
    void valuesOfOtherTypesLeaveAUsableWindow()
    {
        QFETCH(const QVariant, value);
        destroy();
        for (const char* key : {"size", "pos", "fullscreen"}) {
            guitest::store(QStringLiteral("MainWindow"), key, value);
        }
        show();
        QVERIFY(window().isVisible());
        QVERIFY(window().width() >= window().minimumSizeHint().width());
        QVERIFY(window().height() >= window().minimumSizeHint().height());
    }

private:
    void setUp() override { start(""); }
};

static const guitest::Registration<TestSettings> s_registerSettings;
#include "TestSettings.moc"
