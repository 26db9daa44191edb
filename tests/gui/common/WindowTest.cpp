// SPDX-License-Identifier: MIT
#include "tests/gui/common/WindowTest.h"

#include "tests/support/Files.h"
#include "visa/VisaLibrary.h"

#include <QApplication>
#include <QSettings>

#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// Icons in a static library have to be registered; not in a namespace, as Qt requires.
static void registerIcons()
{
    Q_INIT_RESOURCE(resource);
}

namespace guitest {

namespace {

using Classes = std::map<std::string, std::function<std::unique_ptr<QObject>()>>;

Classes& classes()
{
    static Classes s_classes;
    return s_classes;
}

support::ConfigurationFixture* s_configuration = nullptr;

} // namespace

void registerTestClass(const char* name, std::function<std::unique_ptr<QObject>()> create)
{
    classes()[name] = std::move(create);
}

support::ConfigurationFixture& WindowTest::configuration()
{
    return *s_configuration;
}

QString WindowTest::settingsFile()
{
    return QString::fromStdString(support::readFile(QSettings().fileName().toStdString()));
}

void WindowTest::initTestCase()
{
    const visa::VisaLibrary& library = visa::VisaLibrary::instance();
    if (m_visa == Visa::Simulator) {
        QCOMPARE(QString::fromStdString(library.name()).section(QLatin1Char('.'), 0, 0),
                 QStringLiteral("libqvvisa"));
    } else if (library.isFound()) {
        // Clang warns of QSKIP() without a second argument.
        QTest::qSkip("this machine has a VISA library", __FILE__, __LINE__);
    }
}

void WindowTest::init()
{
    m_settings.emplace();
    const QString folder = QString::fromStdString(m_settings->path().string());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);
    QVERIFY(QSettings().fileName().startsWith(folder));
    configuration().write("");
    m_bench.emplace();
    m_warnings.emplace();
    setUp();
}

void WindowTest::cleanup()
{
    support::writeFile(bench().pathFor("go"), "");
    tearDown();
    const QString warnings = m_warnings->take().join(QLatin1Char('\n'));
    m_warnings.reset();
    m_bench.reset();
    m_settings.reset();
    QCOMPARE(warnings, QString());
}

} // namespace guitest

/// Runs the test class that the first argument names; the other arguments are Qt Test's.
int main(int argc, char* argv[])
{
    const auto& classes = guitest::classes();
    const auto found = classes.find(argc > 1 ? argv[1] : "");
    if (found == classes.end()) {
        std::cerr << "Usage: " << argv[0] << " CLASS [option of Qt Test]...\nClasses:\n";
        for (const auto& [name, create] : classes) {
            std::cerr << "  " << name << '\n';
        }
        return EXIT_FAILURE;
    }
    // Before anything can read the user's files. Names are the program's.
    support::ConfigurationFixture configuration;
    guitest::s_configuration = &configuration;
    registerIcons();
    QCoreApplication::setOrganizationName(QStringLiteral("Quorvane"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("quorvane.com"));
    QCoreApplication::setApplicationName(QStringLiteral("QvVisaConfigure"));
    std::vector<char*> arguments(argv, argv + argc);
    arguments.erase(arguments.begin() + 1);
    int count = argc - 1;
    const QApplication application(count, arguments.data());
    const auto test = found->second();
    return QTest::qExec(test.get(), count, arguments.data());
}
