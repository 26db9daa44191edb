// SPDX-License-Identifier: MIT
#include "finder/FinderSettings.h"

#include <cstdlib>
#include <sstream>

namespace finder {

namespace {

std::string variable(const char* name)
{
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

} // namespace

FinderSettings FinderSettings::fromEnvironment()
{
    FinderSettings settings;
    settings.isLocalOnly = variable("QVFIND") == "local";
    std::istringstream names(variable("QVFIND_INTERFACES"));
    for (std::string name; std::getline(names, name, ',');) {
        if (!name.empty()) {
            settings.interfaces.insert(name);
        }
    }
    settings.portTable = variable("QVFIND_PORTS");
    const std::string home = variable("HOME");
    if (settings.portTable.empty() && !home.empty()) {
        settings.portTable = home + "/.quorvane/serial-ports.conf";
    }
    settings.log = variable("QVFIND_LOG");
    return settings;
}

} // namespace finder
