// SPDX-License-Identifier: MIT
#include "tests/support/ConfigurationFixture.h"

#include "tests/support/Files.h"

#include <cstdlib>

namespace support {

ConfigurationFixture::ConfigurationFixture()
{
    write("");
    ::setenv("QVVISACONFFILE", path().c_str(), 1);
}

void ConfigurationFixture::write(std::string_view lines)
{
    writeFile(path(), header().append(lines));
    setModificationTime(path(), ++m_time);
}

void ConfigurationFixture::replace(std::string_view lines)
{
    const std::filesystem::path next = path().string() + ".next";
    writeFile(next, header().append(lines));
    setModificationTime(next, ++m_time);
    std::filesystem::rename(next, path());
}

std::string ConfigurationFixture::read() const
{
    return readFile(path());
}

std::filesystem::path ConfigurationFixture::path() const
{
    return m_home.root() / "visa.conf";
}

std::string ConfigurationFixture::header()
{
    return ":QvVisaConfigurationFileVersion01\n";
}

} // namespace support
