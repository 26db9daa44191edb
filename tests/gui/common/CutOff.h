// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QWidget>

namespace guitest {

/// The visible labels, fields, buttons, tabs and group boxes of a shown window that are smaller
/// than their text needs, reach beyond the window or overlap another. Says so too if there are
/// fewer than `least` of them to check.
QStringList cutOffParts(const QWidget& window, int least);

} // namespace guitest
