// SPDX-License-Identifier: MIT
#pragma once

#include "config/TargetFile.h"

namespace QvVisa {

/// Gives the file behind the descriptor, which this process has just created for itself alone, the
/// owner, group and rights of an existing target. False, with errno set, when one of them cannot be
/// kept: then the file must not take the target's name.
bool carryOverAttributes(const TargetFile& target, int descriptor);

} // namespace QvVisa
