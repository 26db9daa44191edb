// SPDX-License-Identifier: MIT
#pragma once

#include "visa/LibraryProbe.h"
#include "visa/ProbeReportPipe.h"
#include "visa/VisaLibrary.h"

#include <chrono>
#include <string>
#include <vector>

namespace visa {

/// The calls that the probe's child makes, in the order in which the window makes them.
class ProbedLibrary
{
public:
    ProbedLibrary(const ProbeRequest& request, ProbeReportPipe& report,
                  std::chrono::steady_clock::time_point deadline);

    void makeAllCalls();

private:
    using OpenCall = ViStatus(ViSession, ViConstString, ViUInt32, ViUInt32, ViSession*);
    using WriteCall = ViStatus(ViSession, const unsigned char*, ViUInt32, ViUInt32*);
    using ReadCall = ViStatus(ViSession, unsigned char*, ViUInt32, ViUInt32*);

    bool load();
    bool loadCandidate(const std::string& candidate);
    void takeLibrary(void* library);

    ViSession openManager();
    void setAttribute(ViSession session, ViAttr attribute, ViAttrState value);
    void close(ViObject object, const std::string& of = {});
    ViStatus findNext(ViFindList list, const std::string& where = {});

    void searchAll();
    void readList(ViFindList list, ViUInt32 count);
    /// Reports what is in the buffer.
    void reportFound(ViStatus status);
    std::string description() const;

    void searchSerialPorts();

    void identifyAll(ViSession manager);
    void identify(ViSession manager, std::size_t index, ViUInt32 milliseconds);
    ViStatus ask(ViSession instrument, const std::string& resource, ViUInt32 milliseconds,
                 std::string& answer);

    const ProbeRequest& m_request;
    ProbeReportPipe& m_report;
    const std::chrono::steady_clock::time_point m_deadline;

    VisaLibrary::Calls m_calls;
    OpenCall* m_open = nullptr;
    WriteCall* m_write = nullptr;
    ReadCall* m_read = nullptr;

    /// What the library writes descriptions to, with room to notice one that is too long. Not
    /// cleared between two calls, nor is the window's.
    std::vector<ViChar> m_buffer;
    std::vector<std::string> m_resources;
};

} // namespace visa
