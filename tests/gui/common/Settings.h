// SPDX-License-Identifier: MIT
#pragma once

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QTest>

namespace guitest {

inline void store(const QString& group, const char* key, const QVariant& value)
{
    QSettings().setValue(group + QLatin1Char('/') + QLatin1String(key), value);
}

inline QVariant stored(const QString& group, const char* key)
{
    return QSettings().value(group + QLatin1Char('/') + QLatin1String(key));
}

/// The geometry of a window without a stored position.
inline QRect centred(const QSize& size)
{
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    return {available.x() + available.width() / 2 - size.width() / 2,
            available.y() + available.height() / 2 - size.height() / 2, size.width(),
            size.height()};
}

/// Test data: values of a settings file that are no size, position or flag.
inline void addValuesOfOtherTypes()
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
