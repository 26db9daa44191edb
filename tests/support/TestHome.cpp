// SPDX-License-Identifier: MIT
#include "tests/support/TestHome.h"

#include <cstdlib>
#include <system_error>

namespace support {

TestHome::TestHome() : m_formerWorkingFolder(std::filesystem::current_path())
{
    std::filesystem::create_directory(home());
    std::filesystem::create_directory(workingFolder());
    std::filesystem::current_path(workingFolder());
    ::setenv("HOME", home().c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", (root() / "settings").c_str(), 1);
    ::unsetenv("QVVISACONFFILE");
}

TestHome::~TestHome()
{
    std::error_code ignored;
    std::filesystem::current_path(m_formerWorkingFolder, ignored);
}

} // namespace support
