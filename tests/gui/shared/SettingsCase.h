// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QTest>

namespace guitest {

/// The user's settings in a folder of one case's own, empty at first.
class SettingsCase
{
public:
    SettingsCase()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(m_folder.path().string()));
        QCOMPARE(QSettings().allKeys(), QStringList());
    }

    /// All that is stored, as it stands in the file.
    QString file() const
    {
        return QString::fromStdString(
            support::readFile(m_folder.path() / "Quorvane" / "QvVisaConfigure.conf"));
    }

private:
    support::TemporaryFolder m_folder;
};

inline void store(const QString& group, const char* key, const QVariant& value)
{
    QSettings().setValue(group + QLatin1Char('/') + QLatin1String(key), value);
}

inline QVariant stored(const QString& group, const char* key)
{
    return QSettings().value(group + QLatin1Char('/') + QLatin1String(key));
}

/// Where a window without a stored place opens.
inline QRect centred(const QSize& size)
{
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    return {available.x() + available.width() / 2 - size.width() / 2,
            available.y() + available.height() / 2 - size.height() / 2, size.width(),
            size.height()};
}

/// Test data: what may stand in a settings file where a size, a place or a flag is expected.
inline void addOtherKinds()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("text") << QVariant(QStringLiteral("wide"));
    QTest::newRow("empty") << QVariant(QString());
    QTest::newRow("number") << QVariant(5);
    QTest::newRow("list") << QVariant(QStringList{QStringLiteral("1"), QStringLiteral("2")});
    QTest::newRow("bytes") << QVariant(QByteArray("\0\xFF", 2));
    QTest::newRow("rectangle") << QVariant(QRect(1, 2, 3, 4));
    QTest::newRow("broken size") << QVariant(QStringLiteral("@Size(1)"));
    QTest::newRow("invalid") << QVariant(QStringLiteral("@Invalid()"));
    QTest::newRow("flag") << QVariant(true);
}

} // namespace guitest
