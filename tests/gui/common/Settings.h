// SPDX-License-Identifier: MIT
#pragma once

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>

namespace guitest {

inline void store(const QString& group, const char* key, const QVariant& value)
{
    QSettings().setValue(group + QLatin1Char('/') + QLatin1String(key), value);
}

/// The geometry of a window without a stored position.
inline QRect centred(const QSize& size)
{
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    return {available.x() + available.width() / 2 - size.width() / 2,
            available.y() + available.height() / 2 - size.height() / 2, size.width(),
            size.height()};
}

} // namespace guitest
