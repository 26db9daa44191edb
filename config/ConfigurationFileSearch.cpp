// SPDX-License-Identifier: MIT
#include "config/ConfigurationFile.h"

#include "config/SearchPlaces.h"

#include <sys/stat.h>

#include <string>

namespace QvVisa {

namespace {

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

} // namespace

std::string ConfigurationFile::searchConfigFile(bool forWriting)
{
    SharedStatus status;
    for (const SearchPath& candidate : searchOrder(searchEnvironment())) {
        // If stat() fails in a search for writing, the previous successful stat() decides.
        // Deliberate: each step returns a regular file that it sees, so only existing files are
        // ever found.
        if (candidate.path &&
            (status.query(*candidate.path) || (forWriting && candidate.isForWriting)) &&
            status.isRegularFile()) {
            return *candidate.path;
        }
    }
    return {};
}

} // namespace QvVisa
