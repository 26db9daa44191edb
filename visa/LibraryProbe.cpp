// SPDX-License-Identifier: MIT
#include "visa/LibraryProbe.h"

#include "visa/ProbeChild.h"
#include "visa/ProbeRecord.h"
#include "visa/ProbeReportBuilder.h"
#include "visa/VisaLibrary.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <optional>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace visa {

namespace {

using Clock = std::chrono::steady_clock;

/// How often the parent checks whether a silent child has ended: a process that the library started
/// may hold the pipes open.
constexpr std::chrono::milliseconds s_turn{20};

/// A killed child that hangs in a driver does not end. It is given up after this.
constexpr std::chrono::milliseconds s_longestKill{200};

/// A pipe whose ends are closed with the object and in a new program.
class Pipe
{
public:
    Pipe()
    {
        if (::pipe(m_ends.data()) != 0) {
            m_ends = {-1, -1};
            return;
        }
        for (const int end : m_ends) {
            ::fcntl(end, F_SETFD, FD_CLOEXEC);
        }
        ::fcntl(m_ends[0], F_SETFL, O_NONBLOCK);
    }
    ~Pipe()
    {
        closeEnd(0);
        closeEnd(1);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    bool isOpen() const { return m_ends[0] >= 0; }
    int readEnd() const { return m_ends[0]; }
    int writeEnd() const { return m_ends[1]; }

    void closeReadEnd() { closeEnd(0); }
    void closeWriteEnd() { closeEnd(1); }

    /// Calls take(std::string_view) with the bytes in the pipe, if there are any. The buffer is as
    /// large as a pipe, so one read gets all of them.
    template <typename Take>
    void read(Take take)
    {
        std::array<char, 65536> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init)
        const ssize_t size = isOpen() ? ::read(m_ends[0], buffer.data(), buffer.size()) : 0;
        if (size > 0) {
            take(std::string_view(buffer.data(), static_cast<std::size_t>(size)));
        } else if (size == 0) {
            closeReadEnd();
        }
    }

private:
    void closeEnd(std::size_t index)
    {
        if (m_ends[index] >= 0) {
            ::close(m_ends[index]);
            m_ends[index] = -1;
        }
    }

    std::array<int, 2> m_ends{-1, -1};
};

/// Children can be waited for while the object lives, even if the program was started with SIGCHLD
/// ignored.
class WaitableChildren
{
public:
    WaitableChildren()
    {
        struct sigaction standard = {};
        standard.sa_handler = SIG_DFL;
        ::sigaction(SIGCHLD, &standard, &m_former);
    }
    ~WaitableChildren() { ::sigaction(SIGCHLD, &m_former, nullptr); }
    WaitableChildren(const WaitableChildren&) = delete;
    WaitableChildren& operator=(const WaitableChildren&) = delete;

private:
    struct sigaction m_former = {};
};

/// The parent's side of a probe.
class Probe
{
public:
    explicit Probe(const ProbeRequest& request)
        : m_request(request),
          m_deadline(Clock::now() + request.timeout)
    {}

    ProbeReport run();

private:
    bool start();
    ProbeEnd follow();
    void readReport();
    void readOutput();
    /// How the child ended, if it has; it is not waited for.
    std::optional<ProbeEnd> childsEnd() const;
    void waitForNews() const;
    void kill() const;

    const ProbeRequest& m_request;
    const Clock::time_point m_deadline;
    const WaitableChildren m_waitable;
    Pipe m_report;
    Pipe m_output;
    ProbeRecordReader m_reader;
    ProbeReportBuilder m_builder;
    pid_t m_child = -1;
};

ProbeReport Probe::run()
{
    if (!m_report.isOpen() || !m_output.isOpen() || !start()) {
        return m_builder.finish({ProbeEnd::NoChild, errno});
    }
    m_report.closeWriteEnd();
    m_output.closeWriteEnd();
    const ProbeEnd end = follow();
    kill();
    readOutput();
    return m_builder.finish(end);
}

bool Probe::start()
{
    // What is in the buffers would be written by both processes.
    std::fflush(stdout);
    std::fflush(stderr);
    const pid_t parent = ::getpid();
    m_child = ::fork();
    if (m_child == 0) {
        m_report.closeReadEnd();
        m_output.closeReadEnd();
        runProbeChild(m_request, {m_report.writeEnd(), m_output.writeEnd()}, parent, m_deadline);
    }
    return m_child > 0;
}

ProbeEnd Probe::follow()
{
    for (;;) {
        // Before the reads, so that they get all that it wrote.
        const std::optional<ProbeEnd> ended = childsEnd();
        readReport();
        readOutput();
        if (m_builder.end()) {
            return *m_builder.end();
        }
        if (m_reader.isGarbled()) {
            return {ProbeEnd::ReportLost, 0};
        }
        if (ended) {
            return *ended;
        }
        if (Clock::now() >= m_deadline) {
            return m_report.isOpen()
                       ? ProbeEnd{ProbeEnd::TimedOut, static_cast<int>(m_request.timeout.count())}
                       : ProbeEnd{ProbeEnd::ReportLost, 0};
        }
        waitForNews();
    }
}

void Probe::readReport()
{
    m_report.read([this](std::string_view bytes) {
        m_reader.append(bytes);
        while (std::optional<ProbeRecord> record = m_reader.next()) {
            m_builder.take(*std::move(record));
        }
    });
}

void Probe::readOutput()
{
    m_output.read([this](std::string_view bytes) { m_builder.takeOutput(bytes); });
}

std::optional<ProbeEnd> Probe::childsEnd() const
{
    siginfo_t info = {};
    if (::waitid(P_PID, static_cast<id_t>(m_child), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
        info.si_pid != m_child) {
        return std::nullopt;
    }
    if (info.si_code != CLD_EXITED) {
        return ProbeEnd{ProbeEnd::Crashed, info.si_status};
    }
    if (info.si_status == probeLostReport) {
        return ProbeEnd{ProbeEnd::ReportLost, 0};
    }
    return ProbeEnd{ProbeEnd::Exited, info.si_status};
}

void Probe::waitForNews() const
{
    std::array<pollfd, 2> pipes{pollfd{m_report.readEnd(), POLLIN, 0},
                                pollfd{m_output.readEnd(), POLLIN, 0}};
    // Never negative, which would mean to wait without end: this process may have been stopped.
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(m_deadline - Clock::now()) +
        std::chrono::milliseconds(1);
    const auto time = std::clamp(left, std::chrono::milliseconds(0), s_turn);
    ::poll(pipes.data(), pipes.size(), static_cast<int>(time.count()));
}

void Probe::kill() const
{
    // The group exists as long as the child has not been waited for, so no other process is hit.
    ::kill(-m_child, SIGKILL);
    ::kill(m_child, SIGKILL);
    const Clock::time_point end = Clock::now() + s_longestKill;
    while (::waitpid(m_child, nullptr, WNOHANG) == 0 && Clock::now() < end) {
        ::poll(nullptr, 0, 1);
    }
}

} // namespace

ProbeRequest::ProbeRequest() : candidates(VisaLibrary::candidates())
{}

const ProbedCall* ProbeReport::openCall() const
{
    return calls.empty() || calls.back().hasAnswered ? nullptr : &calls.back();
}

const std::vector<std::string>& optionalCalls()
{
    static const std::vector<std::string> calls{"viParseRsrcEx",  "viOpen",         "viWrite",
                                                "viRead",         "viGetAttribute", "viStatusDesc",
                                                "viDisableEvent", "viDiscardEvents"};
    return calls;
}

ProbeReport probeLibrary(const ProbeRequest& request)
{
    return Probe(request).run();
}

} // namespace visa
