// SPDX-License-Identifier: MIT
#include "doctor/MissingInstruments.h"

#include "config/Encoding.h"
#include "doctor/HostLookup.h"
#include "visa/ResourceName.h"
#include "visa/Text.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace QvVisa {

namespace {

using visa::ResourceField;
using visa::ResourceName;

/// The host of a resource on TCPIP without the brackets of IPv6; empty for a device of a gateway
/// and for all other interfaces.
std::string hostOf(const ResourceName& name)
{
    std::string_view host = name.field(ResourceField::Host);
    const std::string device = visa::toUpperCase(name.field(ResourceField::LanDevice));
    const bool isInstrument =
        device.empty() || device.rfind("INST", 0) == 0 || device.rfind("HISLIP", 0) == 0;
    if (host.empty() || !isInstrument) {
        return {};
    }
    if (host.front() == '[') {
        host = host.substr(1, host.size() - 2);
    }
    return std::string(host);
}

/// Maker and model of a USB instrument; empty for all other interfaces.
std::string modelOf(const ResourceName& name)
{
    const std::string_view maker = name.field(ResourceField::ManufacturerId);
    const std::string_view model = name.field(ResourceField::ModelCode);
    return maker.empty() ? std::string()
                         : visa::toUpperCase(std::string(maker) + "::" + std::string(model));
}

/// What a search found, for questions about it.
class Found
{
public:
    /// entries: an instrument with an alias is no replacement for another one.
    Found(const std::vector<std::string>& resources, const Entries& entries)
    {
        std::unordered_set<std::string> named;
        for (const auto& [name, alias] : entries.aliases) {
            named.insert(visa::resourceKey(alias.resource));
        }
        for (const std::string& resource : resources) {
            std::string key = visa::resourceKey(resource);
            const bool isNamed = named.count(key) != 0;
            if (!m_keys.insert(std::move(key)).second) {
                continue;
            }
            if (const auto name = visa::parseResourceName(resource)) {
                if (std::string host = hostOf(*name); !host.empty()) {
                    m_hosts.insert(visa::toUpperCase(host));
                }
                if (std::string model = modelOf(*name); !model.empty() && !isNamed) {
                    m_models.emplace(std::move(model), resource);
                }
            }
        }
    }

    bool has(std::string_view resource) const
    {
        return m_keys.count(visa::resourceKey(resource)) != 0;
    }

    /// Names and addresses, in upper case.
    const std::set<std::string>& hosts() const { return m_hosts; }

    /// The only instrument of that model; empty when there is none or more than one.
    std::string onlyOneOf(const std::string& model) const
    {
        return m_models.count(model) == 1 ? m_models.find(model)->second : std::string();
    }

private:
    std::unordered_set<std::string> m_keys;
    std::set<std::string> m_hosts;
    std::multimap<std::string, std::string> m_models;
};

struct Candidate
{
    MissingInstrument instrument;
    std::string host; ///< In upper case.
};

std::vector<Candidate> aliasesNotListed(const Entries& entries, const Found& found)
{
    std::vector<Candidate> candidates;
    for (const auto& [name, alias] : entries.aliases) {
        if (found.has(alias.resource)) {
            continue;
        }
        Candidate candidate{{name, std::string(alias.resource), alias.line, {}, {}}, {}};
        if (const auto parsed = visa::parseResourceName(alias.resource)) {
            candidate.host = visa::toUpperCase(hostOf(*parsed));
            candidate.instrument.replacement = found.onlyOneOf(modelOf(*parsed));
            if (!candidate.instrument.replacement.empty()) {
                candidate.instrument.hint =
                    "the same model with another serial number was found: " +
                    pathToUtf8(candidate.instrument.replacement);
            }
        }
        candidates.push_back(std::move(candidate));
    }
    std::sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
        return a.instrument.name < b.instrument.name;
    });
    return candidates;
}

using Lookups = std::map<std::string, HostLookup>;

Lookups lookUpHostsOf(const std::vector<Candidate>& candidates, const Found& found,
                      std::chrono::steady_clock::time_point deadline)
{
    std::set<std::string> names;
    for (const Candidate& candidate : candidates) {
        if (!candidate.host.empty()) {
            names.insert(candidate.host);
        }
    }
    if (!names.empty()) {
        names.insert(found.hosts().begin(), found.hosts().end());
    }
    return lookUpHosts(names, deadline);
}

} // namespace

std::vector<MissingInstrument> missingInstruments(const Entries& entries,
                                                  const std::vector<std::string>& resources,
                                                  std::chrono::steady_clock::time_point deadline)
{
    const Found found(resources, entries);
    std::vector<Candidate> candidates = aliasesNotListed(entries, found);
    const Lookups lookups = lookUpHostsOf(candidates, found, deadline);
    std::set<std::string> foundAddresses;
    for (const std::string& host : found.hosts()) {
        if (const auto lookup = lookups.find(host); lookup != lookups.end()) {
            foundAddresses.insert(lookup->second.addresses.begin(), lookup->second.addresses.end());
        }
    }
    std::vector<MissingInstrument> missing;
    for (Candidate& candidate : candidates) {
        MissingInstrument& instrument = candidate.instrument;
        if (!candidate.host.empty()) {
            const HostLookup& lookup = lookups.at(candidate.host);
            const bool isFound = found.hosts().count(candidate.host) != 0 ||
                                 std::any_of(lookup.addresses.begin(), lookup.addresses.end(),
                                             [&foundAddresses](const auto& each) {
                                                 return foundAddresses.count(each) != 0;
                                             });
            if (isFound) {
                continue;
            }
            if (lookup.addresses.empty()) {
                instrument.hint = "its host name cannot be resolved: " + lookup.error;
            }
        }
        missing.push_back(std::move(instrument));
    }
    return missing;
}

} // namespace QvVisa
