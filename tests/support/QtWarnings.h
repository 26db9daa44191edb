// SPDX-License-Identifier: MIT
#pragma once

#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <utility>

namespace support {

/// Notes the warnings and worse that Qt or our code prints while the object lives, from any
/// thread; a textual connection that names no signal or slot is one. Make one in a test's init()
/// and compare all() with an empty list in its cleanup(): Qt Test itself only prints them. Not
/// earlier than init(), or Qt Test's own handler takes its place. One at a time.
class QtWarnings
{
public:
    QtWarnings() { s_former = qInstallMessageHandler(note); }
    ~QtWarnings()
    {
        qInstallMessageHandler(s_former);
        take();
    }
    QtWarnings(const QtWarnings&) = delete;
    QtWarnings& operator=(const QtWarnings&) = delete;

    QStringList all() const
    {
        const QMutexLocker lock(&s_mutex);
        return s_warnings;
    }

    /// all(), which is empty afterwards: for a case that expects a warning.
    QStringList take()
    {
        const QMutexLocker lock(&s_mutex);
        return std::exchange(s_warnings, {});
    }

private:
    static void note(QtMsgType type, const QMessageLogContext& context, const QString& message)
    {
        if (type != QtDebugMsg && type != QtInfoMsg && !isOfThePlatform(message)) {
            const QMutexLocker lock(&s_mutex);
            s_warnings.append(message);
        }
        if (s_former != nullptr) {
            s_former(type, context, message);
        }
    }

    /// The offscreen platform tells what it cannot do; no window of ours is the reason.
    static bool isOfThePlatform(const QString& message)
    {
        return message.startsWith(QLatin1String("This plugin does not support "));
    }

    inline static QtMessageHandler s_former = nullptr;
    /// Guards s_warnings.
    inline static QMutex s_mutex;
    inline static QStringList s_warnings;
};

} // namespace support
