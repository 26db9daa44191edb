// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>

namespace guitest {

/// The window's form as text: a line for each action, layout, widget and spacer, indented below the
/// one that contains it, with its class, name, position in the tab order and every property that
/// differs from a new object of its class. The window must have been shown. Sizes, margins and
/// spacings are left out.
QString formText(const QWidget& window);

/// Empty if the file in tests/gui has this text; otherwise the first line that differs, of both.
/// With QVVISA_WRITE_GOLDEN=1 in the environment, the file is written instead:
///     QVVISA_WRITE_GOLDEN=1 ctest --preset release -R gui.common.windows
/// A person then reads the change against what the window is meant to be.
QString differenceFrom(const QString& file, const QString& text);

} // namespace guitest
