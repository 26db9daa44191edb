// SPDX-License-Identifier: MIT
#include "finder/FinderSource.h"

#include "finder/NetworkInterface.h"
#include "finder/NetworkSearch.h"
#include "finder/PortTable.h"
#include "finder/SearchLog.h"
#include "finder/SerialPorts.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace finder {

namespace {

using namespace std::chrono_literals;

constexpr auto s_longestSearch = 1500ms;
constexpr auto s_localGrace = 100ms;

} // namespace

FinderSource::FinderSource(FinderSettings settings, visa::SystemFiles files)
    : m_settings(std::move(settings)),
      m_files(std::move(files)),
      m_log(std::make_shared<SearchLog>(m_settings.log)),
      m_localSearch(m_files, m_settings.portTable, m_log)
{}

std::string FinderSource::manufacturerName() const
{
    return "Quorvane";
}

resourcemanager::SearchResult FinderSource::search(const resourcemanager::Search& search)
{
    m_log->line("search for " + search.text);
    const bool searchesLocally =
        search.expression.canMatchPrefix("USB") || search.expression.canMatchPrefix("ASRL");
    const auto run = searchesLocally ? m_localSearch.begin() : nullptr;
    std::vector<std::string> found = searchNetwork(search);
    if (run != nullptr) {
        std::vector<std::string> local = searchLocalBuses(search, *run);
        found.insert(found.end(), std::make_move_iterator(local.begin()),
                     std::make_move_iterator(local.end()));
    }
    resourcemanager::SearchResult result;
    std::copy_if(
        found.begin(), found.end(), std::back_inserter(result.descriptions),
        [&search](const std::string& resource) { return search.expression.matches(resource); });
    return result;
}

std::vector<std::string> FinderSource::searchNetwork(const resourcemanager::Search& search)
{
    const char* reason = nullptr;
    if (!search.expression.canMatchPrefix("TCPIP")) {
        reason = "the expression matches no TCPIP resource";
    } else if (m_settings.isLocalOnly) {
        reason = "QVFIND is local";
    } else if (search.searchKinds == 0U) {
        reason = "the client switched it off";
    } else if (search.searchTime == 0ms) {
        reason = "the client gives it no time";
    }
    if (reason != nullptr) {
        m_log->line(std::string("no network search: ") + reason);
        return {};
    }
    NetworkSearch network(networkInterfaces(m_settings.interfaces, *m_log),
                          search.cancellation.descriptor(), *m_log);
    return network.run(search.deadline(s_longestSearch));
}

std::vector<std::string> FinderSource::searchLocalBuses(const resourcemanager::Search& search,
                                                        LocalSearch::Run& run)
{
    const auto deadline = std::max(search.deadline(s_longestSearch), search.begin + s_localGrace);
    LocalSearch::Results results = LocalSearch::results(run, deadline);
    if (!results.isComplete) {
        m_log->line("a USB or serial device holds up the search: the list is not complete");
    }
    return std::move(results.resources);
}

std::string FinderSource::alias(const visa::ResourceName& name)
{
    SearchLog silent("");
    const PortTable table = PortTable::read(m_settings.portTable, m_files, silent);
    const std::vector<SerialPort> ports = serialPorts(m_files, table);
    const auto port =
        std::find_if(ports.begin(), ports.end(), [&name](const SerialPort& candidate) {
            return candidate.resourceString() == name.fullName;
        });
    return port != ports.end() ? port->path : std::string();
}

} // namespace finder
