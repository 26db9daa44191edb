// SPDX-License-Identifier: MIT
#include "config/ConfigurationFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <optional>

namespace QvVisa {

namespace {

constexpr const char* s_systemWideFile = "/Library/Preferences/com.quorvane.visa.conf";

/// The file status that all steps of one search share. A query that fails keeps the status of the
/// last successful one; before that, it counts as not a regular file.
class SharedStatus
{
public:
    bool query(const std::string& path)
    {
        struct stat status = {};
        if (::stat(path.c_str(), &status) != 0) {
            return false;
        }
        m_isRegularFile = S_ISREG(status.st_mode);
        return true;
    }

    bool isRegularFile() const { return m_isRegularFile; }

private:
    bool m_isRegularFile = false;
};

std::optional<std::string> environmentVariable(const char* name)
{
    // Nothing in the program changes the environment.
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

std::optional<std::string> workingFolder()
{
    std::array<char, 1024> buffer{};
    const char* folder = ::getcwd(buffer.data(), buffer.size());
    return folder != nullptr ? std::optional<std::string>(folder) : std::nullopt;
}

bool isExistingFile(const std::string& path, SharedStatus& status)
{
    return status.query(path) && status.isRegularFile();
}

/// If stat() fails and forWriting is set, the previous successful stat() decides. Deliberate: each
/// step returns a regular file that it sees, so only existing files are ever found.
bool isExistingOrWritableFile(const std::string& path, bool forWriting, SharedStatus& status)
{
    return (status.query(path) || forWriting) && status.isRegularFile();
}

} // namespace

std::string ConfigurationFile::searchConfigFile(bool forWriting)
{
    SharedStatus status;
    if (const auto path = environmentVariable("QVVISACONFFILE")) {
        if (isExistingFile(*path, status)) {
            return *path;
        }
    }
    if (const auto folder = workingFolder()) {
        std::string path = *folder + "/visa.conf";
        if (isExistingOrWritableFile(path, forWriting, status)) {
            return path;
        }
    }
    if (const auto home = environmentVariable("HOME")) {
        std::string path = *home + "/.quorvane/visa.conf";
        if (isExistingFile(path, status)) {
            return path;
        }
    }
    if (isExistingOrWritableFile(s_systemWideFile, forWriting, status)) {
        return s_systemWideFile;
    }
    return {};
}

} // namespace QvVisa
