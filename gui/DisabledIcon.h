// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

namespace gui {

/// The icon with pixmaps for QIcon::Disabled: grey and mostly transparent, so that the difference
/// from the enabled icon is plain on light and on dark backgrounds. (What Qt derives itself stays
/// bright on a dark background.) Only for sizes up to 64 pixels. GUI thread only.
QIcon withDisabledPixmaps(const QIcon& icon);

} // namespace gui
