// SPDX-License-Identifier: MIT
#include "finder/ServiceCatalog.h"

#include <algorithm>
#include <optional>

namespace finder {

namespace {

/// Seconds, the usual life of a PTR record. Answers to our first round carry a few seconds instead,
/// and a responder ignores known answers that have less than half of their life left.
constexpr std::uint32_t s_pointerTtl = 4500;

using ServiceNames = std::array<DnsName, serviceNames.size()>;

std::optional<ServiceKind> kindOf(const ServiceNames& names, const DnsName& service)
{
    const auto found = std::find(names.begin(), names.end(), service);
    return found != names.end() ? std::optional(static_cast<ServiceKind>(found - names.begin()))
                                : std::nullopt;
}

/// The kind of an instance's name: one label, which may hold any bytes, before the service's name.
std::optional<ServiceKind> kindOfInstance(const ServiceNames& names, const DnsName& instance)
{
    if (instance.empty()) {
        return std::nullopt;
    }
    const std::size_t label = static_cast<unsigned char>(instance.front()) + std::size_t{1};
    return label < instance.size() ? kindOf(names, instance.substr(label)) : std::nullopt;
}

} // namespace

ServiceCatalog::ServiceCatalog()
{
    std::transform(serviceNames.begin(), serviceNames.end(), m_serviceNames.begin(), dnsName);
}

bool ServiceCatalog::add(Ipv4Address source, const std::vector<DnsRecord>& records)
{
    // A response that says nothing of use must not cost memory.
    Source empty;
    const auto known = m_sources.find(source);
    Source& target = known != m_sources.end() ? known->second : empty;
    bool isNews = false;
    for (const DnsRecord& record : records) {
        switch (record.type) {
        case DnsType::Ptr:
            isNews = addPointer(target, record) || isNews;
            break;
        case DnsType::Srv:
            isNews = addServer(target, record) || isNews;
            break;
        case DnsType::Txt:
        case DnsType::A:
            break;
        }
    }
    // These belong to what the others named, and may precede them in the packet.
    for (const DnsRecord& record : records) {
        if (record.type == DnsType::Txt) {
            isNews = addTexts(target, record) || isNews;
        } else if (record.type == DnsType::A) {
            isNews = addAddress(target, record) || isNews;
        }
    }
    if (known == m_sources.end() && !empty.instances.empty()) {
        m_sources.emplace(source, std::move(empty));
    }
    return isNews;
}

ServiceCatalog::Instance* ServiceCatalog::instance(Source& source, const DnsName& name,
                                                   ServiceKind kind)
{
    const auto known = source.instances.find(name);
    if (known != source.instances.end()) {
        return &known->second;
    }
    if (m_instanceCount == mostInstances || source.instances.size() == mostInstancesOfSource) {
        m_isFull = true;
        return nullptr;
    }
    ++m_instanceCount;
    Instance& added = source.instances[name];
    added.kind = kind;
    return &added;
}

bool ServiceCatalog::addPointer(Source& source, const DnsRecord& record)
{
    const auto kind = kindOf(m_serviceNames, record.name);
    if (!kind || kindOfInstance(m_serviceNames, record.target) != kind) {
        return false;
    }
    if (record.ttl == 0) {
        const bool wasKnown = source.instances.erase(record.target) != 0;
        m_instanceCount -= wasKnown ? 1 : 0;
        return wasKnown;
    }
    const std::size_t before = source.instances.size();
    Instance* const added = instance(source, record.target, *kind);
    if (added != nullptr) {
        added->hasPointer = true;
    }
    return source.instances.size() != before;
}

bool ServiceCatalog::addServer(Source& source, const DnsRecord& record)
{
    const auto kind = kindOfInstance(m_serviceNames, record.name);
    if (!kind) {
        return false;
    }
    if (record.ttl == 0) {
        const auto known = source.instances.find(record.name);
        return known != source.instances.end() && std::exchange(known->second.hasServer, false);
    }
    Instance* const server = instance(source, record.name, *kind);
    if (server == nullptr ||
        (server->hasServer && server->host == record.target && server->port == record.port)) {
        return false;
    }
    server->hasServer = true;
    server->host = record.target;
    server->port = record.port;
    return true;
}

bool ServiceCatalog::addTexts(Source& source, const DnsRecord& record)
{
    const auto described = source.instances.find(record.name);
    if (described == source.instances.end() || record.ttl == 0 || described->second.hasTexts) {
        return false;
    }
    described->second.hasTexts = true;
    described->second.texts = record.texts;
    return true;
}

bool ServiceCatalog::addAddress(Source& source, const DnsRecord& record)
{
    const bool isNamed =
        std::any_of(source.instances.begin(), source.instances.end(),
                    [&record](const auto& entry) { return entry.second.host == record.name; });
    if (!isNamed) {
        return false;
    }
    if (record.ttl == 0) {
        const auto host = source.hosts.find(record.name);
        return host != source.hosts.end() && host->second.erase(record.address) != 0;
    }
    const auto host = source.hosts.find(record.name);
    if ((host == source.hosts.end() && source.hosts.size() == mostHostsOfSource) ||
        (host != source.hosts.end() && host->second.size() == mostAddressesOfHost)) {
        m_isFull = true;
        return false;
    }
    return source.hosts[record.name].insert(record.address).second;
}

std::set<ServiceCatalog::Question> ServiceCatalog::takeQuestions()
{
    std::set<Question> questions;
    const auto ask = [this, &questions](const DnsName& name, DnsType type) {
        if (m_asked.size() < mostQuestions && m_asked.emplace(name, type).second) {
            questions.emplace(name, type);
        }
    };
    for (const auto& [address, source] : m_sources) {
        for (const auto& [name, instance] : source.instances) {
            if (!instance.hasServer) {
                ask(name, DnsType::Srv);
            } else if (source.hosts.count(instance.host) == 0) {
                ask(instance.host, DnsType::A);
            }
            if (!instance.hasTexts) {
                ask(name, DnsType::Txt);
            }
        }
    }
    return questions;
}

void ServiceCatalog::addKnownAnswers(DnsQuery& query, std::size_t mostBytes) const
{
    for (const auto& [address, source] : m_sources) {
        for (const auto& [name, instance] : source.instances) {
            const DnsName& service = m_serviceNames[static_cast<std::size_t>(instance.kind)];
            if (instance.hasPointer && instance.hasServer &&
                !query.addKnownAnswer(service, name, s_pointerTtl, mostBytes)) {
                return;
            }
        }
    }
}

std::vector<AnnouncedService> ServiceCatalog::services() const
{
    std::vector<AnnouncedService> services;
    for (const auto& [address, source] : m_sources) {
        for (const auto& [name, instance] : source.instances) {
            AnnouncedService service;
            service.kind = instance.kind;
            service.instance = name;
            service.texts = instance.texts;
            if (instance.hasServer) {
                service.host = instance.host;
                service.port = instance.port;
            }
            const auto host = source.hosts.find(service.host);
            if (host != source.hosts.end() && !host->second.empty()) {
                service.addresses.assign(host->second.begin(), host->second.end());
            } else {
                service.addresses.push_back(address);
            }
            services.push_back(std::move(service));
        }
    }
    return services;
}

} // namespace finder
