// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/BenchFixture.h"

#include <QRegularExpression>
#include <QStringList>

#include <string>
#include <utility>

namespace guitest {

/// The simulator's log, with RM for the number of its first session and LIST for that of its first
/// find list, which differ from case to case.
inline QStringList namedCalls(const support::BenchFixture& bench)
{
    QStringList calls;
    for (const std::string& call : bench.calls()) {
        calls.append(QString::fromStdString(call));
    }
    const QString log = calls.join(QLatin1Char('\n'));
    for (const auto& [result, name] : {std::pair("session", "RM"), std::pair("list", "LIST")}) {
        const QString key = QString::fromLatin1(result) + QLatin1Char('=');
        const QString number =
            QRegularExpression(key + QStringLiteral("([0-9]+)")).match(log).captured(1);
        if (!number.isEmpty()) {
            calls.replaceInStrings(
                QRegularExpression(QStringLiteral("(\\(|%1)%2\\b").arg(key, number)),
                QStringLiteral("\\1") + QString::fromLatin1(name));
        }
    }
    return calls;
}

} // namespace guitest
