// SPDX-License-Identifier: MIT
// What a window keeps over restarts.
#include "gui/WindowSettings.h"
#include "tests/gui/shared/SettingsCase.h"
#include "tests/gui/shared/WindowTest.h"

#include <QTabWidget>

#include <memory>
#include <optional>

using gui::WindowSettings;

class TestWindowSettings : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void centresWithoutSettings_data();
    void centresWithoutSettings();
    void restoresWhatWasSaved();
    void writesTheseKeysAlone();
    void keepsGroupsApart();
    void appliesEachKeyAlone();
    void appliesValuesAsTheyAre_data();
    void appliesValuesAsTheyAre();
    void survivesValuesOfOtherKinds_data();
    void survivesValuesOfOtherKinds();

    void maximisesAgain();
    void aFullScreenIsNotMaximised();
    void takesAWindowsStateForOneThatIsNotStored();
    void readsMaximisedAsAFlag_data();
    void readsMaximisedAsAFlag();
    void keepsNoMaximisedStateWhereSoWished();

    void keepsTheTab_data();
    void keepsTheTab();
    void savesTheTabThatIsOpenThen();
    void leavesTabsOutWithoutTabs();

private:
    void setUp() override;
    void tearDown() override;
    static std::unique_ptr<QWidget> window();

    std::optional<guitest::SettingsCase> m_settings;
};

namespace {

const QString s_group = QStringLiteral("Group");

void store(const char* key, const QVariant& value)
{
    guitest::store(s_group, key, value);
}

QVariant stored(const char* key)
{
    return guitest::stored(s_group, key);
}

} // namespace

void TestWindowSettings::setUp()
{
    m_settings.emplace();
}

void TestWindowSettings::tearDown()
{
    m_settings.reset();
}

std::unique_ptr<QWidget> TestWindowSettings::window()
{
    auto window = std::make_unique<QWidget>();
    window->resize(320, 210);
    return window;
}

void TestWindowSettings::centresWithoutSettings_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("even") << QSize(320, 210);
    QTest::newRow("odd") << QSize(321, 211);
    QTest::newRow("larger than the screen") << QSize(1000, 900);
}

void TestWindowSettings::centresWithoutSettings()
{
    QFETCH(QSize, size);
    QWidget window;
    window.setGeometry(13, 17, size.width(), size.height());
    WindowSettings(s_group).restore(window);
    QCOMPARE(window.geometry(), guitest::centred(size));
    QVERIFY(!window.isVisible());
    QVERIFY(!window.isMaximized());
    // Restoring alone writes nothing.
    QCOMPARE(QSettings().allKeys(), QStringList());
}

void TestWindowSettings::restoresWhatWasSaved()
{
    const auto first = window();
    first->resize(345, 234);
    first->move(56, 78);
    WindowSettings(s_group).save(*first);
    const auto second = window();
    WindowSettings(s_group).restore(*second);
    QCOMPARE(second->size(), QSize(345, 234));
    QCOMPARE(second->pos(), QPoint(56, 78));
    QVERIFY(!second->isMaximized());
    QVERIFY(!second->isVisible());
}

void TestWindowSettings::writesTheseKeysAlone()
{
    const auto saved = window();
    saved->move(5, 6);
    QTabWidget tabs;
    WindowSettings(QStringLiteral("One")).save(*saved);
    WindowSettings(QStringLiteral("Two"), WindowSettings::Maximised::NotKept).save(*saved);
    WindowSettings(QStringLiteral("Three")).save(*saved, &tabs);
    WindowSettings(QStringLiteral("One")).save(*saved);
    QCOMPARE(m_settings->file(), QStringLiteral("[One]\n"
                                                "fullscreen=false\n"
                                                "pos=@Point(5 6)\n"
                                                "size=@Size(320 210)\n"
                                                "\n"
                                                "[Three]\n"
                                                "fullscreen=false\n"
                                                "pos=@Point(5 6)\n"
                                                "size=@Size(320 210)\n"
                                                "tabindex=-1\n"
                                                "\n"
                                                "[Two]\n"
                                                "pos=@Point(5 6)\n"
                                                "size=@Size(320 210)\n"));
}

void TestWindowSettings::keepsGroupsApart()
{
    const auto first = window();
    first->resize(400, 300);
    WindowSettings(QStringLiteral("First")).save(*first);
    const auto second = window();
    WindowSettings(QStringLiteral("Second")).restore(*second);
    QCOMPARE(second->geometry(), guitest::centred(QSize(320, 210)));
}

void TestWindowSettings::appliesEachKeyAlone()
{
    store("size", QSize(100, 90));
    const auto sized = window();
    WindowSettings(s_group).restore(*sized);
    // Centred at the size that it had, and then resized.
    QCOMPARE(sized->geometry(), QRect(guitest::centred(QSize(320, 210)).topLeft(), QSize(100, 90)));

    QSettings().clear();
    store("pos", QPoint(3, 4));
    const auto moved = window();
    WindowSettings(s_group).restore(*moved);
    QCOMPARE(moved->geometry(), QRect(3, 4, 320, 210));
}

void TestWindowSettings::appliesValuesAsTheyAre_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("position");
    QTest::newRow("left of the screen") << QSize(320, 210) << QPoint(-5000, 10);
    QTest::newRow("above the screen") << QSize(320, 210) << QPoint(10, -5000);
    QTest::newRow("far right and below") << QSize(320, 210) << QPoint(40000, 50000);
    QTest::newRow("larger than the screen") << QSize(5000, 4000) << QPoint(0, 0);
    QTest::newRow("tiny") << QSize(1, 1) << QPoint(10, 10);
}

void TestWindowSettings::appliesValuesAsTheyAre()
{
    QFETCH(QSize, size);
    QFETCH(QPoint, position);
    store("size", size);
    store("pos", position);
    const auto restored = window();
    WindowSettings(s_group).restore(*restored);
    QCOMPARE(restored->size(), size);
    QCOMPARE(restored->pos(), position);
}

void TestWindowSettings::survivesValuesOfOtherKinds_data()
{
    guitest::addOtherKinds();
}

void TestWindowSettings::survivesValuesOfOtherKinds()
{
    QFETCH(QVariant, value);
    for (const char* key : {"size", "pos", "fullscreen", "tabindex"}) {
        store(key, value);
    }
    const auto restored = window();
    restored->setMinimumSize(50, 40);
    QTabWidget tabs;
    tabs.addTab(new QWidget, QString());
    tabs.addTab(new QWidget, QString());
    tabs.setCurrentIndex(1);
    WindowSettings(s_group).restore(*restored, &tabs);
    // As Qt converts what has no size or place in it: no size, and the corner.
    QCOMPARE(restored->size(), QSize(50, 40));
    QCOMPARE(restored->pos(), value.toPoint());
    restored->show();
    QVERIFY(QTest::qWaitForWindowExposed(restored.get()));
    // The next save makes it right.
    WindowSettings(s_group).save(*restored, &tabs);
    QCOMPARE(stored("size").toSize(), restored->size());
    QCOMPARE(stored("tabindex").toInt(), tabs.currentIndex());
}

void TestWindowSettings::maximisesAgain()
{
    const auto first = window();
    first->showMaximized();
    QVERIFY(QTest::qWaitForWindowExposed(first.get()));
    QVERIFY(first->isMaximized());
    WindowSettings(s_group).save(*first);
    QCOMPARE(stored("fullscreen"), QVariant(QStringLiteral("true")));
    QCOMPARE(stored("size").toSize(), first->size());
    QVERIFY(first->size() != QSize(320, 210));

    const auto second = window();
    WindowSettings(s_group).restore(*second);
    QVERIFY(second->isVisible());
    QVERIFY(second->isMaximized());

    second->showNormal();
    WindowSettings(s_group).save(*second);
    const auto third = window();
    WindowSettings(s_group).restore(*third);
    QVERIFY(!third->isVisible());
    QVERIFY(!third->isMaximized());
}

void TestWindowSettings::aFullScreenIsNotMaximised()
{
    const auto full = window();
    full->showFullScreen();
    QVERIFY(QTest::qWaitForWindowExposed(full.get()));
    WindowSettings(s_group).save(*full);
    QCOMPARE(stored("fullscreen").toBool(), false);
    const auto restored = window();
    WindowSettings(s_group).restore(*restored);
    QVERIFY(!restored->isMaximized() && !restored->isFullScreen());
}

void TestWindowSettings::takesAWindowsStateForOneThatIsNotStored()
{
    const auto restored = window();
    restored->setWindowState(Qt::WindowMaximized);
    WindowSettings(s_group).restore(*restored);
    QVERIFY(restored->isVisible());
    QVERIFY(restored->isMaximized());
}

void TestWindowSettings::readsMaximisedAsAFlag_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("maximised");
    QTest::newRow("true") << QVariant(true) << true;
    QTest::newRow("false") << QVariant(false) << false;
    QTest::newRow("1") << QVariant(1) << true;
    QTest::newRow("0") << QVariant(0) << false;
    QTest::newRow("text true") << QVariant(QStringLiteral("true")) << true;
    QTest::newRow("text TRUE") << QVariant(QStringLiteral("TRUE")) << true;
    QTest::newRow("text false") << QVariant(QStringLiteral("false")) << false;
    QTest::newRow("text 0") << QVariant(QStringLiteral("0")) << false;
    QTest::newRow("empty") << QVariant(QString()) << false;
    QTest::newRow("size") << QVariant(QSize(1, 1)) << false;
    QTest::newRow("list") << QVariant(QStringList{QStringLiteral("1"), QStringLiteral("2")})
                          << false;
}

void TestWindowSettings::readsMaximisedAsAFlag()
{
    QFETCH(QVariant, value);
    QFETCH(bool, maximised);
    store("fullscreen", value);
    const auto restored = window();
    WindowSettings(s_group).restore(*restored);
    QCOMPARE(restored->isMaximized(), maximised);
    QCOMPARE(restored->isVisible(), maximised);
}

void TestWindowSettings::keepsNoMaximisedStateWhereSoWished()
{
    const WindowSettings settings(s_group, WindowSettings::Maximised::NotKept);
    store("fullscreen", true);
    const auto restored = window();
    settings.restore(*restored);
    QVERIFY(!restored->isMaximized());
    QVERIFY(!restored->isVisible());

    QSettings().clear();
    restored->showMaximized();
    QVERIFY(QTest::qWaitForWindowExposed(restored.get()));
    settings.save(*restored);
    QVERIFY(!stored("fullscreen").isValid());
    QCOMPARE(stored("size").toSize(), restored->size());
    const auto again = window();
    settings.restore(*again);
    QVERIFY(!again->isMaximized());
    QCOMPARE(again->size(), restored->size());
}

namespace {

std::unique_ptr<QTabWidget> fourTabs(int current)
{
    auto tabs = std::make_unique<QTabWidget>();
    for (int tab = 0; tab < 4; ++tab) {
        tabs->addTab(new QWidget, QString::number(tab));
    }
    tabs->setCurrentIndex(current);
    return tabs;
}

} // namespace

void TestWindowSettings::keepsTheTab_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("expected");
    QTest::newRow("none") << QVariant() << 0;
    QTest::newRow("first") << QVariant(0) << 0;
    QTest::newRow("second") << QVariant(1) << 1;
    QTest::newRow("last") << QVariant(3) << 3;
    QTest::newRow("text") << QVariant(QStringLiteral("2")) << 2;
    QTest::newRow("no number") << QVariant(QStringLiteral("two")) << 0;
    QTest::newRow("size") << QVariant(QSize(1, 1)) << 0;
    // A tab that is not there leaves the tab that is open.
    QTest::newRow("one past") << QVariant(4) << 2;
    QTest::newRow("below") << QVariant(-1) << 2;
}

void TestWindowSettings::keepsTheTab()
{
    QFETCH(QVariant, value);
    QFETCH(int, expected);
    if (value.isValid()) {
        store("tabindex", value);
    }
    const auto restored = window();
    const auto tabs = fourTabs(2);
    WindowSettings(s_group).restore(*restored, tabs.get());
    QCOMPARE(tabs->currentIndex(), expected);
}

void TestWindowSettings::savesTheTabThatIsOpenThen()
{
    const auto saved = window();
    const auto tabs = fourTabs(3);
    // Counted among the tabs that are left, applied among those that are there.
    tabs->removeTab(0);
    tabs->removeTab(0);
    WindowSettings(s_group).save(*saved, tabs.get());
    QCOMPARE(stored("tabindex").toInt(), 1);
    const auto again = fourTabs(0);
    WindowSettings(s_group).restore(*saved, again.get());
    QCOMPARE(again->tabText(again->currentIndex()), QStringLiteral("1"));
}

void TestWindowSettings::leavesTabsOutWithoutTabs()
{
    store("tabindex", 3);
    const auto saved = window();
    WindowSettings(s_group).restore(*saved);
    WindowSettings(s_group).save(*saved);
    QCOMPARE(stored("tabindex").toInt(), 3);
}

static const guitest::Registration<TestWindowSettings> s_registration;
#include "TestWindowSettings.moc"
