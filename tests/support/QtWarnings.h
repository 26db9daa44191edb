// SPDX-License-Identifier: MIT
#pragma once

#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <utility>

namespace support {

/// Records the warnings and errors that are printed through Qt while the object lives, from any
/// thread. A textual connection to a signal or slot that does not exist is such a warning. Create
/// it in a test's init(), not earlier, because Qt Test installs its own handler, and require all()
/// to be empty in cleanup(). One object at a time.
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

    /// Returns all() and clears it: for a case that expects a warning.
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

    /// Warnings of the offscreen platform about what it does not support.
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
