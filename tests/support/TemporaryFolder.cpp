// SPDX-License-Identifier: MIT
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <system_error>

#include <unistd.h>

namespace support {

TemporaryFolder::TemporaryFolder()
{
    std::string name = std::filesystem::temp_directory_path() / "qvvisa-test-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder at " + name);
    }
    m_path = std::filesystem::canonical(name);
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace support
