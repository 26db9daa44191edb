// SPDX-License-Identifier: MIT
// The scan that the main window starts.
#include "gui/ResourceDialog.h"
#include "tests/gui/main_window/MainWindowCase.h"
#include "tests/gui/shared/BlockedThread.h"
#include "tests/gui/shared/NamedCalls.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/Files.h"

#include <QListWidget>

#include <atomic>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>

class TestScan : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void makesTheseCallsOnce();
    void windowWorksWhileTheScanRuns();
    void destructionWaitsForTheScan();
    void eachWindowScansAnew();

private:
    void tearDown() override;
    QStringList calls();
    QStringList foundResources() const;

    std::optional<guitest::MainWindowCase> m_case;
};

namespace {

const std::string s_waiting = "resource GPIB0::1::INSTR\nwait-for-file go\n";

} // namespace

void TestScan::tearDown()
{
    if (m_case) {
        // Whatever the case came to, its scan must end.
        support::writeFile(m_case->bench().pathFor("go"), "");
    }
    m_case.reset();
}

QStringList TestScan::calls()
{
    return guitest::namedCalls(m_case->bench());
}

QStringList TestScan::foundResources() const
{
    const gui::ResourceDialog dialog(nullptr);
    const auto& list = support::child<QListWidget>(dialog, "rsrcList");
    QStringList texts;
    for (int row = 0; row < list.count(); ++row) {
        texts.append(list.item(row)->text());
    }
    return texts;
}

void TestScan::makesTheseCallsOnce()
{
    m_case.emplace(configuration(), "", "resource USB0::1::2::3::INSTR\nresource ASRL1::INSTR\n");
    m_case->show();
    m_case->click("actionClose");
    m_case->destroy();
    const QStringList expected{
        QStringLiteral("viOpenDefaultRM() -> VI_SUCCESS, session=RM"),
        QStringLiteral("viSetAttribute(RM, 0x0E5A0002, 7) -> VI_SUCCESS"),
        QStringLiteral("viSetAttribute(RM, 0x0E5A0001, 1000) -> VI_SUCCESS"),
        QStringLiteral("viFindRsrc(RM, \"?*\") -> VI_SUCCESS, list=LIST, count=2, "
                       "description=\"USB0::1::2::3::INSTR\""),
        QStringLiteral("viFindNext(LIST) -> VI_SUCCESS, description=\"ASRL1::INSTR\""),
        QStringLiteral("viClose(LIST) -> VI_SUCCESS"),
        QStringLiteral("viClose(RM) -> VI_SUCCESS"),
    };
    QCOMPARE(calls(), expected);
    QCOMPARE(foundResources(),
             (QStringList{QStringLiteral("ASRL1::INSTR"), QStringLiteral("USB0::1::2::3::INSTR")}));
}

void TestScan::windowWorksWhileTheScanRuns()
{
    m_case.emplace(configuration(), "A=ASRL1::INSTR\n", s_waiting);
    m_case->show();
    QTRY_COMPARE(calls().size(), 3);
    m_case->editCell(0, 1, "B");
    m_case->click("actionSave");
    QCOMPARE(configuration().read(),
             support::ConfigurationFixture::header() + ":Provider=3674\nB=ASRL1::INSTR\n");
    m_case->click("actionClose");
    QVERIFY(!m_case->window().isVisible());
    // All this time the search has not come back.
    QCOMPARE(calls().size(), 3);
}

void TestScan::destructionWaitsForTheScan()
{
    m_case.emplace(configuration(), "", s_waiting);
    m_case->show();
    m_case->click("actionClose");
    QTRY_COMPARE(calls().size(), 3);

    const std::filesystem::path go = m_case->bench().pathFor("go");
    const std::string settingsFile = QSettings().fileName().toStdString();
    const auto isSaved = [&settingsFile] {
        return std::filesystem::exists(settingsFile) &&
               support::readFile(settingsFile).find("[MainWindow]") != std::string::npos;
    };
    std::atomic<bool> isDestroyed{false};
    std::atomic<bool> endedTheWait{false};
    std::atomic<bool> hadSaved{false};
    const guitest::BlockedThread guiThread;
    std::thread ender([&] {
        while (!guiThread.isBlocked() && !isDestroyed) {
            std::this_thread::yield();
        }
        hadSaved = isSaved();
        endedTheWait = !isDestroyed;
        support::writeFile(go, "");
    });
    m_case->destroy();
    isDestroyed = true;
    const bool waited = endedTheWait;
    ender.join();
    QVERIFY(waited);
    QCOMPARE(calls().last(), QStringLiteral("viClose(RM) -> VI_SUCCESS"));
    QCOMPARE(calls().size(), 6);
    // Size and position are saved once the scan has ended.
    QVERIFY(!hadSaved);
    QVERIFY(isSaved());
    QCOMPARE(foundResources(), QStringList(QStringLiteral("GPIB0::1::INSTR")));
}

void TestScan::eachWindowScansAnew()
{
    m_case.emplace(configuration(), "", "resource ASRL1::INSTR\n");
    m_case->show();
    m_case->destroy();
    QCOMPARE(foundResources(), QStringList(QStringLiteral("ASRL1::INSTR")));
    m_case->bench().write("");
    m_case->show();
    m_case->destroy();
    QCOMPARE(foundResources(), QStringList());
}

static const guitest::Registration<TestScan> s_registration;
#include "TestScan.moc"
