// SPDX-License-Identifier: MIT
// The program's own main(), looked at from within its event loop. Its arguments are the test's.
#include "gui/MainWindow.h"
#include "tests/support/Children.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/Files.h"
#include "Version.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>

namespace {

/// The user's surroundings, there before main() begins and after it has returned.
class Surroundings
{
public:
    Surroundings() { m_configuration.write("A=ASRL1::INSTR\n"); }

    ~Surroundings()
    {
        // main() destroys the window, which then saves its place; here is the last chance to fail.
        const std::filesystem::path file =
            m_configuration.home().root() / "settings" / "Quorvane" / "QvVisaConfigure.conf";
        if (!std::filesystem::exists(file) ||
            support::readFile(file).find("[MainWindow]") == std::string::npos) {
            std::cerr << "main() has left no settings in " << file << '\n';
            m_hasFailed = true;
        }
        if (m_hasFailed) {
            std::_Exit(EXIT_FAILURE);
        }
    }

    const support::TestHome& home() const { return m_configuration.home(); }

    /// main() returns what its closed window leaves it, 0, also after a failure.
    void fail() { m_hasFailed = true; }

private:
    support::ConfigurationFixture m_configuration;
    bool m_hasFailed = false;
};

Surroundings s_surroundings;

gui::MainWindow& window()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* found = qobject_cast<gui::MainWindow*>(widget)) {
            return *found;
        }
    }
    throw std::runtime_error("no main window");
}

} // namespace

class TestApplication : public QObject
{
    Q_OBJECT

private slots:
    void saysWhoItIs();
    void keepsItsSettingsUnderThatName();
    void showsOneWindow();
    void hasItsIcons();
    void drawsForDenseScreens();
    void endsWithItsWindow();
};

void TestApplication::saysWhoItIs()
{
    QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("Quorvane"));
    QCOMPARE(QCoreApplication::organizationDomain(), QStringLiteral("quorvane.com"));
    QCOMPARE(QCoreApplication::applicationName(), QStringLiteral("QvVisaConfigure"));
    QCOMPARE(QCoreApplication::applicationVersion(), QLatin1String(qvvisa::versionText));
}

void TestApplication::keepsItsSettingsUnderThatName()
{
    QCOMPARE(QSettings().fileName(), QString::fromStdString(s_surroundings.home().root().string()) +
                                         QStringLiteral("/settings/Quorvane/QvVisaConfigure.conf"));
}

void TestApplication::showsOneWindow()
{
    QVERIFY(QTest::qWaitForWindowExposed(&window()));
    int shown = 0;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        shown += widget->isVisible() ? 1 : 0;
    }
    QCOMPARE(shown, 1);
    QCOMPARE(window().parent(), nullptr);
    QCOMPARE(window().windowTitle(),
             QLatin1String("QvVisaConfigure - ") + QLatin1String(qvvisa::versionText));
    QVERIFY(QApplication::quitOnLastWindowClosed());
}

void TestApplication::hasItsIcons()
{
    QCOMPARE(QDir(QStringLiteral(":/icons")).entryList().size(), 10);
    QVERIFY(!window().windowIcon().pixmap(32, 32).isNull());
}

void TestApplication::drawsForDenseScreens()
{
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling));
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps));
    // Rounded, 150 % would be drawn as 200 %.
    QCOMPARE(QGuiApplication::highDpiScaleFactorRoundingPolicy(),
             Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

void TestApplication::endsWithItsWindow()
{
    // Nothing else may end the event loop, or the program would end before its window does.
    QVERIFY(!QCoreApplication::closingDown());
    support::child<QAction>(window(), "actionClose").trigger();
    QVERIFY(!window().isVisible());
}

namespace {

void testOnceItRuns()
{
    QTimer::singleShot(0, [] {
        if (const QByteArray status = qgetenv("QVVISA_TEST_EXIT"); !status.isEmpty()) {
            QCoreApplication::exit(status.toInt());
            return;
        }
        TestApplication test;
        if (QTest::qExec(&test, {QCoreApplication::applicationFilePath()}) != 0) {
            s_surroundings.fail();
            QCoreApplication::quit();
        }
    });
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(testOnceItRuns)

#include "TestApplication.moc"
