// SPDX-License-Identifier: MIT
#pragma once

#include "gui/ResourceDialog.h"
#include "tests/support/BenchFixture.h"
#include "tests/support/Files.h"

#include <QTest>

#include <string>
#include <string_view>
#include <thread>

namespace guitest {

/// A scan on a thread of its own, as the main window starts one, that the library lets come back
/// only after release().
class HeldScan
{
public:
    /// The scan has begun and waits in the library's search when the constructor returns; what it
    /// finds are the lines.
    HeldScan(support::BenchFixture& bench, std::string_view lines)
        : m_go(bench.pathFor("go").string())
    {
        bench.write(std::string(lines) + "wait-for-file \"" + m_go + "\"\n");
        bench.clearCalls();
        m_thread = std::thread([] { gui::ResourceDialog::updateResourceList(); });
        // What the scan says before it searches.
        m_hasBegun = QTest::qWaitFor([&bench] { return bench.calls().size() == 3; }, 60000);
    }
    ~HeldScan()
    {
        release();
        m_thread.join();
    }
    HeldScan(const HeldScan&) = delete;
    HeldScan& operator=(const HeldScan&) = delete;

    bool hasBegun() const { return m_hasBegun; }

    /// Any thread.
    void release() const { support::writeFile(m_go, ""); }

private:
    std::string m_go;
    std::thread m_thread;
    bool m_hasBegun = false;
};

} // namespace guitest
