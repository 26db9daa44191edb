// SPDX-License-Identifier: MIT
// The program's own main(): this test runs inside its event loop.
#include "gui/MainWindow.h"
#include "tests/support/Children.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/Files.h"
#include "Version.h"

#include <QAction>
#include <QApplication>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>

namespace {

/// The user's home and files, from before main() until after its return.
class UserFiles
{
public:
    UserFiles() { m_configuration.write("A=ASRL1::INSTR\n"); }

    ~UserFiles()
    {
        // The window has saved its settings in its destructor, at the end of main().
        const std::filesystem::path file =
            m_configuration.home().root() / "settings" / "Quorvane" / "QvVisaConfigure.conf";
        if (!std::filesystem::exists(file) ||
            support::readFile(file).find("[MainWindow]") == std::string::npos) {
            std::cerr << "main() wrote no settings to " << file << '\n';
            m_hasFailed = true;
        }
        if (m_hasFailed) {
            std::_Exit(EXIT_FAILURE);
        }
    }

    const support::TestHome& home() const { return m_configuration.home(); }

    /// main() returns 0 after a failure too.
    void fail() { m_hasFailed = true; }

private:
    support::ConfigurationFixture m_configuration;
    bool m_hasFailed = false;
};

UserFiles s_userFiles;

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
    void namesAndVersionAreSet()
    {
        QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("Quorvane"));
        QCOMPARE(QCoreApplication::organizationDomain(), QStringLiteral("quorvane.com"));
        QCOMPARE(QCoreApplication::applicationName(), QStringLiteral("QvVisaConfigure"));
        QCOMPARE(QCoreApplication::applicationVersion(), QLatin1String(qvvisa::versionText));
    }

    void settingsFileHasTheseNames()
    {
        QCOMPARE(QSettings().fileName(),
                 QString::fromStdString(s_userFiles.home().root().string()) +
                     QStringLiteral("/settings/Quorvane/QvVisaConfigure.conf"));
    }

    void oneWindowIsShown()
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
        QVERIFY(!window().windowIcon().pixmap(32, 32).isNull());
        QVERIFY(QApplication::quitOnLastWindowClosed());
    }

    void highDensityScreensAreSupported()
    {
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling));
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps));
        // Rounded, 150 % would be drawn as 200 %.
        QCOMPARE(QGuiApplication::highDpiScaleFactorRoundingPolicy(),
                 Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    }

    void closingTheWindowEndsTheProgram()
    {
        QVERIFY(!QCoreApplication::closingDown());
        support::child<QAction>(window(), "actionClose").trigger();
        QVERIFY(!window().isVisible());
    }
};

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
            s_userFiles.fail();
            QCoreApplication::quit();
        }
    });
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(testOnceItRuns)

#include "TestApplication.moc"
