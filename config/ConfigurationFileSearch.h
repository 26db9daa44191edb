// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace QvVisa {

/// The work behind ConfigurationFile::searchConfigFile(), which tells what it finds.
std::string searchConfigFile(bool forWriting);

} // namespace QvVisa
