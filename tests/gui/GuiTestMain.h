// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ConfigurationFixture.h"

#include <QApplication>
#include <QSettings>
#include <QTest>

/// The icons lie in a static library: they are only there when asked for. Not in a namespace, as
/// Qt has it.
inline void registerIcons()
{
    Q_INIT_RESOURCE(resource);
}

namespace guitest {

/// main() of a test of windows. The test's surroundings are made before anything can look into
/// the user's: home, settings and configuration file are the fixture's, which the test class takes
/// in its constructor. Names and icons are the program's.
template <typename Test>
int run(int argc, char* argv[])
{
    support::ConfigurationFixture configuration;
    registerIcons();
    QCoreApplication::setOrganizationName(QStringLiteral("Quorvane"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("quorvane.com"));
    QCoreApplication::setApplicationName(QStringLiteral("QvVisaConfigure"));
    const QApplication application(argc, argv);
    const QString root = QString::fromStdString(configuration.home().root().string());
    if (!QSettings().fileName().startsWith(root)) {
        qFatal("the settings are not the test's own: %s", qPrintable(QSettings().fileName()));
    }
    Test test(configuration);
    return QTest::qExec(&test, argc, argv);
}

} // namespace guitest
