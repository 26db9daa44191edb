// SPDX-License-Identifier: MIT
#pragma once

#include "finder/FinderSettings.h"
#include "finder/LocalSearch.h"
#include "resourcemanager/ResourceSource.h"
#include "visa/SystemFiles.h"

#include <memory>
#include <string>
#include <vector>

namespace finder {

class SearchLog;

/// The resources that the machine and its networks have at the moment of a search. Nothing is
/// remembered between searches. Any thread; searches do not wait for each other, but for a device
/// that holds up the search of local buses.
class FinderSource : public resourcemanager::ResourceSource
{
public:
    FinderSource(FinderSettings settings, visa::SystemFiles files);

    std::string manufacturerName() const override;

    /// TCPIP by address, USB by identifiers, ASRL by number. Ends at the deadline, at most 1.5 s
    /// after its beginning, but gives the local buses 0.1 s in any case. No packet is sent when the
    /// expression can match no TCPIP resource, when the search kinds are 0, when the search time is
    /// 0, and when the settings say so.
    resourcemanager::SearchResult search(const resourcemanager::Search& search) override;

    /// The pinned path, else the device node, of a serial port; empty for all other resources.
    std::string alias(const visa::ResourceName& name) override;

private:
    std::vector<std::string> searchNetwork(const resourcemanager::Search& search);
    std::vector<std::string> searchLocalBuses(const resourcemanager::Search& search,
                                              LocalSearch::Run& run);

    const FinderSettings m_settings;
    const visa::SystemFiles m_files;
    const std::shared_ptr<SearchLog> m_log;
    LocalSearch m_localSearch;
};

} // namespace finder
