// SPDX-License-Identifier: MIT
#include "tests/gui/shared/FaultyLibrary.h"

#include <algorithm>

namespace guitest {

FaultyLibrary::FaultyLibrary()
{
    for (const int port : {3, 1, 2}) {
        addResource("ASRL" + std::to_string(port), QStringLiteral("ASRL%1").arg(port), port);
    }
    for (int other = 1; other <= 6; ++other) {
        addResource("g" + std::to_string(other), QStringLiteral("g%1").arg(other));
    }
}

void FaultyLibrary::addResource(const std::string& bytes, const QString& text,
                                std::optional<int> port)
{
    const std::string interface = port ? " interface=ASRL," + std::to_string(*port) : "";
    m_resources.push_back({"resource " + bytes + interface + "\n", text, port});
}

void FaultyLibrary::answer(Call call, Answer answer, int at)
{
    static const char* const calls[] = {"viOpenDefaultRM", "viSetAttribute", "viFindRsrc",
                                        "viFindNext",      "viParseRsrc",    "viClose"};
    static const char* const statuses[] = {"VI_SUCCESS", "VI_ERROR_IO", "0x3FFF0085"};
    m_settings += std::string("status ") + calls[call] + " " + statuses[answer];
    m_settings += at != 0 ? " at=" + std::to_string(at) + "\n" : "\n";
    m_rules.push_back({call, answer, at});
}

void FaultyLibrary::tellCount(int count)
{
    m_settings += "count " + std::to_string(count) + "\n";
    m_count = count;
}

void FaultyLibrary::takeTime()
{
    m_settings += "scan-time 1\n";
}

void FaultyLibrary::holdSearch()
{
    m_settings += "wait-for-file go for=?*\n";
    m_isSearchHeld = true;
}

void FaultyLibrary::holdNext(int next)
{
    m_settings += "wait-for-file go call=viFindNext at=" + std::to_string(next) + "\n";
    m_heldNext = next;
}

std::string FaultyLibrary::bench() const
{
    std::string lines;
    for (const Resource& resource : m_resources) {
        lines += resource.line;
    }
    return lines + m_settings;
}

FaultyLibrary::Answer FaultyLibrary::answerTo(Call call, int nth) const
{
    const auto rule = std::find_if(m_rules.rbegin(), m_rules.rend(), [&](const Rule& candidate) {
        return candidate.call == call && (candidate.at == 0 || candidate.at == nth);
    });
    return rule != m_rules.rend() ? rule->answer : Success;
}

std::optional<int> FaultyLibrary::countOf(std::size_t hits) const
{
    if (answerTo(Open, 1) == Error || answerTo(Find, 1) == Error || (hits == 0 && !m_count)) {
        return std::nullopt;
    }
    return m_count.value_or(static_cast<int>(hits));
}

/// One warning ends the search, and a step that does not succeed costs its resource alone.
QStringList FaultyLibrary::scanned() const
{
    QStringList found;
    const int count = countOf(m_resources.size()).value_or(0);
    if (answerTo(Find, 1) != Success || count == 0) {
        return found;
    }
    found.append(m_resources.empty() ? QString() : m_resources.front().text);
    for (int next = 1; next < count && next < static_cast<int>(m_resources.size()); ++next) {
        if (answerTo(Next, next) == Success) {
            found.append(m_resources[static_cast<std::size_t>(next)].text);
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::vector<FaultyLibrary::Resource> FaultyLibrary::serialPorts() const
{
    std::vector<Resource> ports;
    std::copy_if(m_resources.begin(), m_resources.end(), std::back_inserter(ports),
                 [](const Resource& resource) { return resource.port.has_value(); });
    return ports;
}

/// Warnings do not end the search, and a step that does not succeed ends the list.
QStringList FaultyLibrary::ports() const
{
    QStringList listed;
    std::vector<Resource> hits = serialPorts();
    const int count = countOf(hits.size()).value_or(0);
    if (hits.empty()) {
        // A count without a match comes with an empty text, which cannot be parsed.
        hits.push_back({"", QString(), 0});
    }
    for (int i = 0; i < count && i < static_cast<int>(hits.size()); ++i) {
        if (i > 0 && answerTo(Next, i) != Success) {
            break;
        }
        const Resource& hit = hits[static_cast<std::size_t>(i)];
        const int number = answerTo(Parse, i + 1) == Error ? 0 : hit.port.value_or(0);
        listed.append(QStringLiteral("%1=%2").arg(hit.text).arg(number));
    }
    return listed;
}

std::optional<std::size_t> FaultyLibrary::callsBeforeHold() const
{
    // To open and to set two attributes.
    constexpr std::size_t first = 3;
    if (answerTo(Open, 1) == Error) {
        return std::nullopt;
    }
    if (m_isSearchHeld) {
        return first;
    }
    const int count = countOf(m_resources.size()).value_or(0);
    if (!m_heldNext || answerTo(Find, 1) != Success || count <= *m_heldNext) {
        return std::nullopt;
    }
    return first + static_cast<std::size_t>(*m_heldNext);
}

} // namespace guitest
