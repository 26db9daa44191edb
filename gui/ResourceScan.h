// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace gui {

/// Asks the VISA library for every resource: one session to the resource manager, one search. The
/// answer is sorted by code units, descriptions are taken as UTF-8, duplicates kept, and what the
/// library fails to deliver is left out. Blocks for as long as the library takes; any thread.
QStringList scanForResources();

} // namespace gui
