// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/Children.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace guitest {

inline void clickButton(const QDialog& dialog, QDialogButtonBox::StandardButton button)
{
    const auto& box = support::child<QDialogButtonBox>(dialog, "buttonBox");
    QTest::mouseClick(box.button(button), Qt::LeftButton);
}

/// All texts of the list, separated by blanks.
inline QString listed(const QListWidget& list)
{
    QStringList texts;
    for (int row = 0; row < list.count(); ++row) {
        texts.append(list.item(row)->text());
    }
    return texts.join(QLatin1Char(' '));
}

} // namespace guitest
