// SPDX-License-Identifier: MIT
#pragma once

namespace QvVisa {

/// Ignores SIGXFSZ and SIGPIPE, by which the system ends a program that writes beyond its limit on
/// file sizes or to a closed pipe: the write fails instead. The window's main() calls it first.
/// Programs started later inherit this.
void ignoreWriteSignals();

} // namespace QvVisa
