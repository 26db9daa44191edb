// SPDX-License-Identifier: MIT
// What WindowSettings stores of a window, and how it restores it.
#include "gui/WindowSettings.h"
#include "tests/gui/common/Settings.h"
#include "tests/gui/common/WindowTest.h"

#include <QTabWidget>

#include <memory>

using gui::WindowSettings;

class TestWindowSettings : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void withoutSettingsCentresTheWindow_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("even") << QSize(320, 210);
        QTest::newRow("odd") << QSize(321, 211);
        QTest::newRow("larger than the screen") << QSize(1000, 900);
    }

    void withoutSettingsCentresTheWindow()
    {
        QFETCH(const QSize, size);
        // Of another group.
        WindowSettings(QStringLiteral("Other")).save(*newWindow());
        QWidget window;
        window.setGeometry(13, 17, size.width(), size.height());
        WindowSettings(s_group).restore(window);
        QCOMPARE(window.geometry(), guitest::centred(size));
        QVERIFY(!window.isVisible());
        QVERIFY(!stored("size").isValid());
    }

    void eachKeyIsAppliedAlone()
    {
        store("size", QSize(100, 90));
        // Centred at its own size, then resized.
        QCOMPARE(restoredWindow()->geometry(),
                 QRect(guitest::centred(QSize(320, 210)).topLeft(), QSize(100, 90)));
        QSettings().clear();
        store("pos", QPoint(3, 4));
        QCOMPARE(restoredWindow()->geometry(), QRect(3, 4, 320, 210));
    }

    void sizeAndPositionAreNotClamped_data()
    {
        columns<QSize, QPoint>("size", "position");
        QTest::newRow("left of and above the screen") << QSize(320, 210) << QPoint(-5000, -5000);
        QTest::newRow("far right and below") << QSize(320, 210) << QPoint(40000, 50000);
        QTest::newRow("larger than the screen") << QSize(5000, 4000) << QPoint(0, 0);
        QTest::newRow("one pixel") << QSize(1, 1) << QPoint(10, 10);
    }

    void sizeAndPositionAreNotClamped()
    {
        QFETCH(const QSize, size);
        QFETCH(const QPoint, position);
        const auto saved = newWindow();
        saved->resize(size);
        saved->move(position);
        WindowSettings(s_group).save(*saved);
        const auto window = restoredWindow();
        QCOMPARE(window->size(), size);
        QCOMPARE(window->pos(), position);
        QVERIFY(!window->isVisible());
    }

    void valuesOfOtherTypesAreConverted_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("text") << QVariant(QStringLiteral("wide"));
        QTest::newRow("number") << QVariant(5);
        QTest::newRow("list") << QVariant(QStringList{QStringLiteral("1"), QStringLiteral("2")});
        QTest::newRow("bytes") << QVariant(QByteArray("\0\xFF", 2));
        QTest::newRow("broken size") << QVariant(QStringLiteral("@Size(1)"));
        QTest::newRow("invalid") << QVariant(QStringLiteral("@Invalid()"));
    }

    void valuesOfOtherTypesAreConverted()
    {
        QFETCH(const QVariant, value);
        for (const char* key : {"size", "pos", "fullscreen", "tabindex"}) {
            store(key, value);
        }
        const auto window = newWindow();
        window->setMinimumSize(50, 40);
        const auto tabs = newTabs(1);
        WindowSettings(s_group).restore(*window, tabs.get());
        // Qt converts a value without a size to an invalid size, and one without a position to 0,0.
        QCOMPARE(window->size(), QSize(50, 40));
        QCOMPARE(window->pos(), QPoint());
        QCOMPARE(tabs->currentIndex(), value.type() == QVariant::Int ? 1 : 0);
    }

    void stateIsReadAsAFlag_data()
    {
        columns<QVariant, bool>("value", "maximised");
        QTest::newRow("true") << QVariant(true) << true;
        QTest::newRow("false") << QVariant(false) << false;
        QTest::newRow("text TRUE") << QVariant(QStringLiteral("TRUE")) << true;
        QTest::newRow("text 0") << QVariant(QStringLiteral("0")) << false;
        QTest::newRow("empty") << QVariant(QString()) << false;
        QTest::newRow("size") << QVariant(QSize(1, 1)) << false;
    }

    void stateIsReadAsAFlag()
    {
        QFETCH(const QVariant, value);
        QFETCH(const bool, maximised);
        store("fullscreen", value);
        const auto window = restoredWindow();
        QCOMPARE(window->isMaximized(), maximised);
        QCOMPARE(window->isVisible(), maximised);
    }

    void fullScreenIsNotMaximised()
    {
        const auto window = newWindow();
        window->showFullScreen();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        WindowSettings(s_group).save(*window);
        QCOMPARE(stored("fullscreen"), QVariant(QStringLiteral("false")));
    }

    void missingStateKeepsTheState()
    {
        const auto window = newWindow();
        window->setWindowState(Qt::WindowMaximized);
        WindowSettings(s_group).restore(*window);
        QVERIFY(window->isVisible());
        QVERIFY(window->isMaximized());
    }

    void stateIsLeftOutWhereItIsNotKept()
    {
        const WindowSettings settings(s_group, WindowSettings::Maximised::NotKept);
        store("fullscreen", true);
        const auto window = newWindow();
        settings.restore(*window);
        QVERIFY(!window->isVisible());
        QSettings().clear();
        settings.save(*window);
        QVERIFY(!stored("fullscreen").isValid());
    }

    void storedTabIsOpened_data()
    {
        columns<QVariant, int>("value", "expected");
        QTest::newRow("none") << QVariant() << 0;
        QTest::newRow("last") << QVariant(3) << 3;
        QTest::newRow("text") << QVariant(QStringLiteral("1")) << 1;
        QTest::newRow("no number") << QVariant(QStringLiteral("two")) << 0;
        // The current tab stays.
        QTest::newRow("past the last") << QVariant(4) << 2;
        QTest::newRow("negative") << QVariant(-1) << 2;
    }

    void storedTabIsOpened()
    {
        QFETCH(const QVariant, value);
        if (value.isValid()) {
            store("tabindex", value);
        }
        const auto tabs = newTabs(2);
        WindowSettings(s_group).restore(*newWindow(), tabs.get());
        QTEST(tabs->currentIndex(), "expected");
    }

    void currentTabIsSaved()
    {
        const auto window = newWindow();
        const auto tabs = newTabs(3);
        // The index counts the tabs that are left.
        tabs->removeTab(0);
        tabs->removeTab(0);
        WindowSettings(s_group).save(*window, tabs.get());
        QCOMPARE(stored("tabindex").toInt(), 1);
        // Without tabs, the index stays.
        WindowSettings(s_group).restore(*window);
        WindowSettings(s_group).save(*window);
        QCOMPARE(stored("tabindex").toInt(), 1);
    }

private:
    static std::unique_ptr<QWidget> newWindow()
    {
        auto window = std::make_unique<QWidget>();
        window->resize(320, 210);
        return window;
    }
    /// A window that has been restored from the group.
    static std::unique_ptr<QWidget> restoredWindow()
    {
        auto window = newWindow();
        WindowSettings(s_group).restore(*window);
        return window;
    }
    static std::unique_ptr<QTabWidget> newTabs(int current)
    {
        auto tabs = std::make_unique<QTabWidget>();
        for (int tab = 0; tab < 4; ++tab) {
            tabs->addTab(new QWidget, QString::number(tab));
        }
        tabs->setCurrentIndex(current);
        return tabs;
    }
    static void store(const char* key, const QVariant& value)
    {
        guitest::store(s_group, key, value);
    }
    static QVariant stored(const char* key)
    {
        return QSettings().value(s_group + QLatin1Char('/') + QLatin1String(key));
    }

    static const QString s_group;
};

const QString TestWindowSettings::s_group = QStringLiteral("Group");

static const guitest::Registration<TestWindowSettings> s_registerWindowSettings;
#include "TestWindowSettings.moc"
