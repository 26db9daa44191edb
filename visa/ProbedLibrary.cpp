// SPDX-License-Identifier: MIT
#include "visa/ProbedLibrary.h"

#include "visa/LibraryLoading.h"
#include "visa/ResourceName.h"
#include "visa/SearchAttributes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include <dlfcn.h>
#ifdef __GLIBC__
#include <link.h>
#endif

namespace visa {

namespace {

constexpr ViAttr s_timeoutAttribute = 0x3FFF001A;
constexpr ViAttr s_terminationEnabledAttribute = 0x3FFF0038;

/// An instrument gets its share of the time that is left, within these bounds.
constexpr std::chrono::milliseconds s_shortestAnswer{200};
constexpr std::chrono::milliseconds s_longestAnswer{2000};

constexpr std::size_t s_roomAfterDescription = 4096;
constexpr ViChar s_untouched = '\x55';

/// The file of a loaded library, as the loader names it.
std::string fileOf(void* library, const VisaLibrary::Calls& calls)
{
#ifdef __GLIBC__
    static_cast<void>(calls);
    link_map* map = nullptr;
    if (::dlinfo(library, RTLD_DI_LINKMAP, &map) == 0 && map != nullptr && map->l_name != nullptr) {
        return map->l_name;
    }
    return {};
#else
    static_cast<void>(library);
    Dl_info info = {};
    const auto* const address = reinterpret_cast<const void*>(calls.openDefaultRM);
    return ::dladdr(address, &info) != 0 && info.dli_fname != nullptr ? info.dli_fname : "";
#endif
}

template <typename Call>
Call* find(void* library, const char* name)
{
    return reinterpret_cast<Call*>(::dlsym(library, name));
}

/// Instruments that understand messages; an interface or a memory region does not.
bool takesMessages(const std::string& resource)
{
    const auto name = parseResourceName(resource);
    return name && (name->resourceClass == "INSTR" || name->resourceClass == "SOCKET");
}

bool isSocket(const std::string& resource)
{
    const auto name = parseResourceName(resource);
    return name && name->resourceClass == "SOCKET";
}

} // namespace

ProbedLibrary::ProbedLibrary(const ProbeRequest& request, ProbeReportPipe& report,
                             std::chrono::steady_clock::time_point deadline)
    : m_request(request),
      m_report(report),
      m_deadline(deadline),
      m_buffer(VI_FIND_BUFLEN + s_roomAfterDescription)
{
    std::fill(m_buffer.begin() + VI_FIND_BUFLEN, m_buffer.end(), s_untouched);
}

void ProbedLibrary::makeAllCalls()
{
    if (!load()) {
        return;
    }
    searchAll();
    if (m_request.serialPorts) {
        searchSerialPorts();
    }
}

bool ProbedLibrary::load()
{
    return std::any_of(m_request.candidates.begin(), m_request.candidates.end(),
                       [this](const std::string& candidate) { return loadCandidate(candidate); });
}

bool ProbedLibrary::loadCandidate(const std::string& candidate)
{
    LoadedLibrary library;
    m_report.add(ProbeRecordKind::Tries, candidate);
    m_report.call("dlopen " + candidate, [&] {
        library = loadLibrary(candidate.c_str());
        if (library.hasThrown) {
            return VI_ERROR_SYSTEM_ERROR;
        }
        return library.handle != nullptr ? VI_SUCCESS : VI_ERROR_LIBRARY_NFOUND;
    });
    if (library.handle == nullptr) {
        const char* const message = ::dlerror(); // NOLINT(concurrency-mt-unsafe)
        m_report.add(ProbeRecordKind::LoadFails, message != nullptr ? message : "",
                     library.hasThrown ? 1 : 0);
        return false;
    }
    const std::vector<std::string> missing = VisaLibrary::resolve(library.handle, m_calls);
    if (missing.empty()) {
        takeLibrary(library.handle);
        return true;
    }
    for (const std::string& call : missing) {
        m_report.add(ProbeRecordKind::LibraryLacks, call);
    }
    m_report.call("dlclose " + candidate, [&] {
        ::dlclose(library.handle);
        return VI_SUCCESS;
    });
    return false;
}

void ProbedLibrary::takeLibrary(void* library)
{
    m_report.add(ProbeRecordKind::LibraryTaken, fileOf(library, m_calls));
    for (const std::string& call : optionalCalls()) {
        if (::dlsym(library, call.c_str()) == nullptr) {
            m_report.add(ProbeRecordKind::LibraryLacksToo, call);
        }
    }
    m_open = find<OpenCall>(library, "viOpen");
    m_write = find<WriteCall>(library, "viWrite");
    m_read = find<ReadCall>(library, "viRead");
}

ViSession ProbedLibrary::openManager()
{
    ViSession manager = VI_NULL;
    m_report.call("viOpenDefaultRM", [&] { return m_calls.openDefaultRM(&manager); });
    return manager;
}

void ProbedLibrary::setAttribute(ViSession session, ViAttr attribute, ViAttrState value)
{
    m_report.call("viSetAttribute",
                  [&] { return m_calls.setAttribute(session, attribute, value); });
}

void ProbedLibrary::close(ViObject object, const std::string& of)
{
    m_report.call("viClose" + of, [&] { return m_calls.close(object); });
}

ViStatus ProbedLibrary::findNext(ViFindList list, const std::string& where)
{
    return m_report.call("viFindNext" + where,
                         [&] { return m_calls.findNext(list, m_buffer.data()); });
}

std::string ProbedLibrary::description() const
{
    return {m_buffer.data(), ::strnlen(m_buffer.data(), VI_FIND_BUFLEN)};
}

void ProbedLibrary::searchAll()
{
    const ViSession manager = openManager();
    setAttribute(manager, searchInterfacesAttribute, allInterfaces);
    setAttribute(manager, searchTimeAttribute, searchTime);
    ViFindList list = VI_NULL;
    ViUInt32 count = 0;
    const ViStatus status = m_report.call("viFindRsrc " + m_request.expression, [&] {
        return m_calls.findRsrc(manager, m_request.expression.c_str(), &list, &count,
                                m_buffer.data());
    });
    m_report.add(ProbeRecordKind::Searched, {}, status, count);
    if (status >= VI_SUCCESS && count > 0) {
        reportFound(status);
        readList(list, count);
        close(list);
    }
    if (m_request.identify) {
        identifyAll(manager);
    }
    close(manager);
}

void ProbedLibrary::readList(ViFindList list, ViUInt32 count)
{
    std::uint64_t failures = 0;
    for (ViUInt32 index = 1; index < count; ++index) {
        if (failures == ProbeReport::mostFailures ||
            m_resources.size() == ProbeReport::mostResources) {
            m_report.add(ProbeRecordKind::ListCut);
            return;
        }
        const ViStatus status = findNext(list);
        if (status >= VI_SUCCESS) {
            failures = 0;
            reportFound(status);
        } else {
            ++failures;
            m_report.add(ProbeRecordKind::EntryDropped);
        }
    }
    // The window does not ask; a count that is too small shortens its list.
    if (findNext(list, " after the last") >= VI_SUCCESS) {
        m_report.add(ProbeRecordKind::MoreFound);
    }
}

void ProbedLibrary::reportFound(ViStatus status)
{
    std::int64_t flags = 0;
    m_resources.push_back(description());
    if (m_resources.back().size() == VI_FIND_BUFLEN) {
        flags |= FoundFlag::Unterminated;
    }
    const auto end = m_buffer.begin() + VI_FIND_BUFLEN;
    if (std::any_of(end, m_buffer.end(), [](ViChar each) { return each != s_untouched; })) {
        flags |= FoundFlag::Overrun;
        std::fill(end, m_buffer.end(), s_untouched);
    }
    m_report.add(ProbeRecordKind::Found, m_resources.back(), status, flags);
}

void ProbedLibrary::searchSerialPorts()
{
    const ViSession manager = openManager();
    setAttribute(manager, searchInterfacesAttribute, localInterfaces);
    ViFindList list = VI_NULL;
    ViUInt32 count = 0;
    const ViStatus status = m_report.call("viFindRsrc ASRL?*", [&] {
        return m_calls.findRsrc(manager, "ASRL?*", &list, &count, m_buffer.data());
    });
    m_report.add(ProbeRecordKind::PortsSearched, {}, status);
    if (status >= VI_SUCCESS) {
        for (ViUInt32 left = count; left > 0; --left) {
            const std::string resource = description();
            ViUInt16 type = 0;
            ViUInt16 number = 0;
            const ViStatus parsed =
                m_report.call("viParseRsrc " + (resource.empty() ? "\"\"" : resource), [&] {
                    return m_calls.parseRsrc(manager, resource.c_str(), &type, &number);
                });
            m_report.add(ProbeRecordKind::PortFound, resource, parsed, number);
            // As in the window, also called after the last one.
            if (findNext(list) != VI_SUCCESS) {
                break;
            }
        }
        close(list);
    }
    close(manager);
}

void ProbedLibrary::identifyAll(ViSession manager)
{
    if (m_open == nullptr || m_write == nullptr || m_read == nullptr) {
        return;
    }
    std::vector<std::size_t> asked;
    for (std::size_t index = 0; index < m_resources.size(); ++index) {
        if (takesMessages(m_resources[index])) {
            asked.push_back(index);
        }
    }
    for (std::size_t done = 0; done < asked.size(); ++done) {
        const auto left = m_deadline - std::chrono::steady_clock::now();
        const auto share = std::chrono::duration_cast<std::chrono::milliseconds>(left) /
                           static_cast<std::int64_t>(asked.size() - done);
        identify(
            manager, asked[done],
            static_cast<ViUInt32>(std::clamp(share, s_shortestAnswer, s_longestAnswer).count()));
    }
}

void ProbedLibrary::identify(ViSession manager, std::size_t index, ViUInt32 milliseconds)
{
    const std::string& resource = m_resources[index];
    ViSession instrument = VI_NULL;
    std::string answer;
    ViStatus status = m_report.call("viOpen " + resource, [&] {
        return m_open(manager, resource.c_str(), 0, milliseconds, &instrument);
    });
    if (status >= VI_SUCCESS) {
        status = ask(instrument, resource, milliseconds, answer);
        close(instrument, ' ' + resource);
    }
    m_report.add(status >= VI_SUCCESS ? ProbeRecordKind::Identified
                                      : ProbeRecordKind::NotIdentified,
                 answer, status, static_cast<std::int64_t>(index));
}

ViStatus ProbedLibrary::ask(ViSession instrument, const std::string& resource,
                            ViUInt32 milliseconds, std::string& answer)
{
    setAttribute(instrument, s_timeoutAttribute, milliseconds);
    if (isSocket(resource)) {
        // Nothing else ends an answer on a socket.
        setAttribute(instrument, s_terminationEnabledAttribute, 1);
    }
    static constexpr std::array<unsigned char, 6> question{'*', 'I', 'D', 'N', '?', '\n'};
    ViUInt32 count = 0;
    ViStatus status = m_report.call("viWrite " + resource, [&] {
        return m_write(instrument, question.data(), question.size(), &count);
    });
    if (status < VI_SUCCESS) {
        return status;
    }
    std::vector<unsigned char> buffer(1024);
    count = 0;
    status = m_report.call("viRead " + resource, [&] {
        return m_read(instrument, buffer.data(), static_cast<ViUInt32>(buffer.size()), &count);
    });
    const auto length = static_cast<std::ptrdiff_t>(std::min<std::size_t>(count, buffer.size()));
    answer.assign(buffer.begin(), buffer.begin() + length);
    return status;
}

} // namespace visa
