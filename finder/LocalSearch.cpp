// SPDX-License-Identifier: MIT
#include "finder/LocalSearch.h"

#include "finder/PortTable.h"
#include "finder/SearchLog.h"
#include "finder/SerialPorts.h"
#include "finder/UsbInstruments.h"

#include <algorithm>
#include <condition_variable>
#include <system_error>
#include <thread>
#include <utility>

namespace finder {

class LocalSearch::Run
{
public:
    void execute(const visa::SystemFiles& files, const std::string& portTable, SearchLog& log)
    {
        try {
            const PortTable table = PortTable::read(portTable, files, log);
            std::vector<SerialPort> ports = serialPorts(files, table);
            logSerialPorts(ports, files, log);
            {
                const std::lock_guard<std::mutex> lock(m_mutex);
                m_ports = std::move(ports);
            }
            findUsbInstruments(files, log, [this](const UsbInstrument& instrument) {
                const std::lock_guard<std::mutex> lock(m_mutex);
                m_instruments.push_back(instrument);
            });
        } catch (const std::exception&) {
            // Out of memory: what was found until here is listed.
        }
        end();
    }

    void end()
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_isComplete = true;
        }
        m_completed.notify_all();
    }

    bool isComplete() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_isComplete;
    }

    Results results(Clock::time_point deadline)
    {
        Results results;
        std::unique_lock<std::mutex> lock(m_mutex);
        results.isComplete =
            m_completed.wait_until(lock, deadline, [this] { return m_isComplete; });
        std::sort(m_instruments.begin(), m_instruments.end());
        for (const UsbInstrument& instrument : m_instruments) {
            results.resources.push_back(instrument.resourceString());
        }
        for (const SerialPort& port : m_ports) {
            results.resources.push_back(port.resourceString());
        }
        return results;
    }

private:
    mutable std::mutex m_mutex; ///< Guards what follows.
    std::condition_variable m_completed;
    bool m_isComplete = false;
    std::vector<UsbInstrument> m_instruments;
    std::vector<SerialPort> m_ports;
};

LocalSearch::LocalSearch(visa::SystemFiles files, std::string portTable,
                         std::shared_ptr<SearchLog> log)
    : m_files(std::move(files)),
      m_portTable(std::move(portTable)),
      m_log(std::move(log))
{}

std::shared_ptr<LocalSearch::Run> LocalSearch::begin()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_latest != nullptr && !m_latest->isComplete()) {
        return m_latest;
    }
    auto run = std::make_shared<Run>();
    try {
        // A hanging device must not keep the process from ending: nobody joins this thread.
        std::thread([run, files = m_files, table = m_portTable, log = m_log] {
            run->execute(files, table, *log);
        }).detach();
    } catch (const std::system_error&) {
        m_log->line("no thread for USB and serial ports: they are left out");
        run->end();
    }
    m_latest = run;
    return run;
}

LocalSearch::Results LocalSearch::results(Run& run, Clock::time_point deadline)
{
    return run.results(deadline);
}

} // namespace finder
