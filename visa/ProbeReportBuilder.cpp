// SPDX-License-Identifier: MIT
#include "visa/ProbeReportBuilder.h"

#include <algorithm>
#include <utility>

namespace visa {

namespace {

/// More candidates or missing calls than any library can have are damaged memory.
constexpr std::size_t s_mostNames = 64;

ViStatus statusOf(const ProbeRecord& record)
{
    return static_cast<ViStatus>(record.first);
}

template <typename Item>
void append(std::vector<Item>& items, Item item, std::size_t most)
{
    if (items.size() < most) {
        items.push_back(std::move(item));
    }
}

} // namespace

void ProbeReportBuilder::take(ProbeRecord record)
{
    switch (record.kind) {
    case ProbeRecordKind::CallBegins:
        return beginCall(std::move(record.text));
    case ProbeRecordKind::CallReturns:
        return endCall(record, false);
    case ProbeRecordKind::CallThrows:
        return endCall(record, true);
    case ProbeRecordKind::Tries:
    case ProbeRecordKind::LoadFails:
    case ProbeRecordKind::LibraryLacks:
    case ProbeRecordKind::LibraryTaken:
    case ProbeRecordKind::LibraryLacksToo:
        return takeLoading(record);
    case ProbeRecordKind::Searched:
        m_report.hasSearched = true;
        m_report.searchStatus = statusOf(record);
        m_report.count = static_cast<ViUInt32>(record.second);
        return;
    case ProbeRecordKind::Found:
        return takeFound(record);
    case ProbeRecordKind::EntryDropped:
        ++m_report.droppedEntries;
        return;
    case ProbeRecordKind::ListCut:
        m_report.isListCut = true;
        return;
    case ProbeRecordKind::MoreFound:
        m_report.hasMoreThanCount = true;
        return;
    case ProbeRecordKind::PortsSearched:
        m_report.hasSearchedSerialPorts = true;
        m_report.serialSearchStatus = statusOf(record);
        return;
    case ProbeRecordKind::PortFound:
        return append(
            m_report.serialPorts,
            {std::move(record.text), static_cast<ViUInt16>(record.second), statusOf(record)},
            ProbeReport::mostResources);
    case ProbeRecordKind::Identified:
    case ProbeRecordKind::NotIdentified:
        return takeAnswer(record);
    case ProbeRecordKind::Exits:
        m_end = ProbeEnd{ProbeEnd::Exited, static_cast<int>(record.first)};
        return;
    case ProbeRecordKind::Finished:
        m_end = ProbeEnd{ProbeEnd::Finished, 0};
        return;
    }
}

void ProbeReportBuilder::beginCall(std::string name)
{
    ProbedCall call;
    call.name = std::move(name);
    if (m_report.calls.empty() || m_report.calls.back().hasAnswered) {
        m_report.calls.push_back(std::move(call));
    } else {
        m_report.calls.back() = std::move(call); // A call that is announced twice.
    }
}

void ProbeReportBuilder::endCall(const ProbeRecord& record, bool hasThrown)
{
    std::vector<ProbedCall>& calls = m_report.calls;
    if (calls.empty() || calls.back().hasAnswered) {
        return;
    }
    ProbedCall& call = calls.back();
    call.status = statusOf(record);
    call.duration = std::chrono::nanoseconds(std::max<std::int64_t>(record.second, 0));
    call.hasAnswered = true;
    call.hasThrown = hasThrown;
    ProbedCall* const previous = calls.size() > 1 ? &call - 1 : nullptr;
    if (previous != nullptr && previous->name == call.name && previous->status == call.status &&
        previous->hasThrown == call.hasThrown) {
        ++previous->times;
        previous->duration += call.duration;
        calls.pop_back();
    } else if (calls.size() > ProbeReport::mostCalls) {
        ++m_report.omittedCalls;
        calls.pop_back();
    }
}

void ProbeReportBuilder::takeLoading(ProbeRecord& record)
{
    std::vector<LoadAttempt>& attempts = m_report.attempts;
    if (record.kind == ProbeRecordKind::Tries) {
        LoadAttempt attempt;
        attempt.candidate = std::move(record.text);
        return append(attempts, std::move(attempt), s_mostNames);
    }
    if (attempts.empty()) {
        return;
    }
    LoadAttempt& attempt = attempts.back();
    if (record.kind == ProbeRecordKind::LoadFails) {
        attempt.message = std::move(record.text);
        attempt.hasThrown = record.first != 0;
    } else if (record.kind == ProbeRecordKind::LibraryLacks) {
        attempt.isLoaded = true;
        append(attempt.missingCalls, std::move(record.text), s_mostNames);
    } else if (record.kind == ProbeRecordKind::LibraryTaken) {
        attempt.isLoaded = true;
        m_report.library = attempt.candidate;
        m_report.libraryFile = std::move(record.text);
    } else {
        append(m_report.missingOptionalCalls, std::move(record.text), s_mostNames);
    }
}

void ProbeReportBuilder::takeFound(ProbeRecord& record)
{
    FoundResource found;
    found.resource = std::move(record.text);
    found.status = statusOf(record);
    found.isUnterminated = (record.second & FoundFlag::Unterminated) != 0;
    found.isOverrun = (record.second & FoundFlag::Overrun) != 0;
    append(m_report.resources, std::move(found), ProbeReport::mostResources);
}

void ProbeReportBuilder::takeAnswer(ProbeRecord& record)
{
    if (record.second < 0 ||
        static_cast<std::uint64_t>(record.second) >= m_report.resources.size()) {
        return;
    }
    FoundResource& found = m_report.resources[static_cast<std::size_t>(record.second)];
    found.identity = std::move(record.text);
    found.identifyStatus = statusOf(record);
    found.isIdentified = record.kind == ProbeRecordKind::Identified;
}

void ProbeReportBuilder::takeOutput(std::string_view bytes)
{
    m_report.outputSize += bytes.size();
    m_report.output.append(bytes.substr(0, ProbeReport::mostOutput - m_report.output.size()));
}

ProbeReport ProbeReportBuilder::finish(ProbeEnd end)
{
    m_report.end = end;
    if (m_report.hasSearched && m_report.searchStatus == VI_SUCCESS) {
        for (const FoundResource& found : m_report.resources) {
            if (found.status == VI_SUCCESS) {
                m_report.windowList.push_back(found.resource);
            }
        }
        std::sort(m_report.windowList.begin(), m_report.windowList.end());
    }
    return std::exchange(m_report, {});
}

} // namespace visa
