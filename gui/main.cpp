// SPDX-License-Identifier: MIT
#include "gui/MainWindow.h"

#include "config/WriteSignals.h"
#include "Version.h"

#include <QApplication>
#include <QStringList>

namespace {

QString version()
{
    QStringList numbers;
    for (const int number : {qvvisa::versionMajor, qvvisa::versionMinor, qvvisa::versionPatch}) {
        numbers.append(QString::number(number, 10));
    }
    return numbers.join(QLatin1Char('.'));
}

} // namespace

int main(int argc, char* argv[])
{
    QvVisa::ignoreWriteSignals();
    Q_INIT_RESOURCE(resource);
    QCoreApplication::setOrganizationName(QStringLiteral("Quorvane"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("quorvane.com"));
    QCoreApplication::setApplicationName(QStringLiteral("QvVisaConfigure"));
    QCoreApplication::setApplicationVersion(version());
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    // Otherwise a 150 % desktop gets windows at 200 %, larger than its screen.
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
#endif
    const QApplication application(argc, argv);
    gui::MainWindow window(nullptr);
    window.show();
    return QApplication::exec();
}
