// SPDX-License-Identifier: MIT
// The find dialog, and its cache, while a scan runs on another thread.
#include "tests/gui/resource_dialog/HeldScan.h"
#include "tests/gui/resource_dialog/ResourceDialogCase.h"
#include "tests/gui/shared/BlockedThread.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/BenchFixture.h"

#include <atomic>
#include <future>
#include <optional>
#include <thread>

using guitest::HeldScan;
using guitest::ResourceDialogCase;

namespace {

/// Looks at a dialog at the moment when it takes the wait cursor, and then lets the scan go as
/// soon as the dialog's thread stands still.
class WaitingDialog : public QObject
{
public:
    WaitingDialog(ResourceDialogCase& find, const HeldScan& scan) : m_find(find), m_scan(scan)
    {
        find.dialog().installEventFilter(this);
    }
    ~WaitingDialog() override { goOn(); }
    WaitingDialog(const WaitingDialog&) = delete;
    WaitingDialog& operator=(const WaitingDialog&) = delete;

    /// The dialog's thread is back.
    void goOn()
    {
        m_isBack = true;
        if (m_releaser.joinable()) {
            m_releaser.join();
        }
    }

    /// What the user met while the dialog waited.
    bool tookWaitCursor() const { return m_tookWaitCursor; }
    bool hadItsButtons() const { return m_hadItsButtons; }
    /// The wait cursor was the dialog's, on the screen, or else every window's.
    bool wasSeenWaiting() const { return m_wasSeenWaiting; }

    /// The dialog's thread stood still before the scan was let go. After goOn().
    bool waited() const { return m_waited; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::CursorChange && !m_tookWaitCursor &&
            m_find.dialog().cursor().shape() == Qt::WaitCursor) {
            m_tookWaitCursor = true;
            m_wasSeenWaiting = m_find.dialog().isActiveWindow() ||
                               (QGuiApplication::overrideCursor() != nullptr &&
                                QGuiApplication::overrideCursor()->shape() == Qt::WaitCursor);
            m_hadItsButtons = m_find.box().isEnabled() || m_find.refresh().isEnabled();
            m_releaser = std::thread([this] { releaseWhenBlocked(); });
        }
        return false;
    }

private:
    void releaseWhenBlocked()
    {
        while (!m_isBack && !m_dialogsThread.isBlocked()) {
            std::this_thread::yield();
        }
        m_waited = !m_isBack;
        m_scan.release();
    }

    ResourceDialogCase& m_find;
    const HeldScan& m_scan;
    guitest::BlockedThread m_dialogsThread;
    std::thread m_releaser;
    std::atomic<bool> m_isBack{false};
    bool m_tookWaitCursor = false;
    bool m_hadItsButtons = false;
    bool m_wasSeenWaiting = false;
    bool m_waited = false;
};

} // namespace

class TestWaiting : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void constructionDoesNotWait();
    void showWaitsForTheScan();
    void showAfterTheScanDoesNotWait();
    void listIsCompleteWhenTheScanEndsBetweenConstructionAndShow();
    void refreshWaitsForTheScanAndAsksAgain();
    void secondScanWaitsForTheFirst();
    void cacheIsReadWhileScansReplaceIt();

private:
    void setUp() override;
};

void TestWaiting::setUp()
{
    const support::BenchFixture bench("resource before\n");
    gui::ResourceDialog::updateResourceList();
}

/// A dialog that is made while a scan runs has what the cache has: nothing. Were it to wait, this
/// case would never end.
void TestWaiting::constructionDoesNotWait()
{
    support::BenchFixture bench;
    QCOMPARE(ResourceDialogCase().listed(), QStringLiteral("before"));
    const HeldScan scan(bench, "resource b\nresource a\n");
    QVERIFY(scan.hasBegun());
    QCOMPARE(ResourceDialogCase().list().count(), 0);
}

void TestWaiting::showWaitsForTheScan()
{
    support::BenchFixture bench;
    const HeldScan scan(bench, "resource b\nresource a\nresource c\n");
    QVERIFY(scan.hasBegun());
    ResourceDialogCase find;
    WaitingDialog waiting(find, scan);
    find.show();
    waiting.goOn();
    QVERIFY(waiting.tookWaitCursor());
    QVERIFY(waiting.wasSeenWaiting());
    QVERIFY(!waiting.hadItsButtons());
    QVERIFY(waiting.waited());
    QVERIFY(QGuiApplication::overrideCursor() == nullptr);
    QCOMPARE(find.listed(), QStringLiteral("a b c"));
    QCOMPARE(find.dialog().cursor().shape(), Qt::ArrowCursor);
    QVERIFY(find.box().isEnabled() && find.refresh().isEnabled());
    // It waited for the scan that ran, and made none of its own.
    QCOMPARE(bench.calls().size(), std::size_t{8});
}

void TestWaiting::showAfterTheScanDoesNotWait()
{
    support::BenchFixture bench;
    ResourceDialogCase made;
    {
        const HeldScan scan(bench, "resource b\n");
        QVERIFY(scan.hasBegun());
    }
    // Made before the scan, shown behind it: it lists what there was when it was made.
    made.show();
    QCOMPARE(made.listed(), QStringLiteral("before"));
    ResourceDialogCase next;
    next.show();
    QCOMPARE(next.listed(), QStringLiteral("b"));
}

void TestWaiting::listIsCompleteWhenTheScanEndsBetweenConstructionAndShow()
{
    support::BenchFixture bench;
    std::optional<HeldScan> scan(std::in_place, bench, "resource b\nresource a\n");
    QVERIFY(scan->hasBegun());
    ResourceDialogCase find;
    scan.reset();
    QCOMPARE(find.list().count(), 0);
    find.show();
    QCOMPARE(find.listed(), QStringLiteral("a b"));
}

void TestWaiting::refreshWaitsForTheScanAndAsksAgain()
{
    support::BenchFixture bench;
    ResourceDialogCase find;
    find.show();
    const HeldScan scan(bench, "resource b\nresource a\n");
    QVERIFY(scan.hasBegun());
    WaitingDialog waiting(find, scan);
    find.clickRefresh();
    waiting.goOn();
    QVERIFY(waiting.tookWaitCursor());
    QVERIFY(waiting.wasSeenWaiting());
    QVERIFY(!waiting.hadItsButtons());
    QVERIFY(waiting.waited());
    QVERIFY(QGuiApplication::overrideCursor() == nullptr);
    QCOMPARE(find.listed(), QStringLiteral("a b"));
    // Two scans, one behind the other.
    QCOMPARE(bench.calls().size(), std::size_t{14});
}

void TestWaiting::secondScanWaitsForTheFirst()
{
    support::BenchFixture bench;
    std::optional<HeldScan> first(std::in_place, bench, "resource b\n");
    QVERIFY(first->hasBegun());
    std::promise<guitest::BlockedThread> started;
    std::thread second([&started] {
        started.set_value(guitest::BlockedThread());
        gui::ResourceDialog::updateResourceList();
    });
    const guitest::BlockedThread secondScan = started.get_future().get();
    while (!secondScan.isBlocked()) {
        std::this_thread::yield();
    }
    first.reset();
    second.join();
    const std::vector<std::string> calls = bench.calls();
    QCOMPARE(calls.size(), std::size_t{12});
    for (std::size_t half : {std::size_t{0}, std::size_t{6}}) {
        QVERIFY(calls[half].rfind("viOpenDefaultRM", 0) == 0);
        QVERIFY(calls[half + 3].rfind("viFindRsrc", 0) == 0);
        QVERIFY(calls[half + 5].rfind("viClose", 0) == 0);
    }
    QCOMPARE(ResourceDialogCase().listed(), QStringLiteral("b"));
}

/// Whatever a dialog copies is whole: nothing, or one scan's result.
void TestWaiting::cacheIsReadWhileScansReplaceIt()
{
    const support::BenchFixture bench("resource c\nresource a\nresource b\n");
    gui::ResourceDialog::updateResourceList();
    std::atomic<bool> isOver{false};
    std::thread scans([&isOver] {
        for (int i = 0; i < 100; ++i) {
            gui::ResourceDialog::updateResourceList();
        }
        isOver = true;
    });
    bool isWhole = true;
    while (!isOver) {
        const QString copied = ResourceDialogCase().listed();
        isWhole = isWhole && (copied.isEmpty() || copied == QLatin1String("a b c"));
    }
    scans.join();
    QVERIFY(isWhole);
    QCOMPARE(ResourceDialogCase().listed(), QStringLiteral("a b c"));
}

static const guitest::Registration<TestWaiting> s_registration;
#include "TestWaiting.moc"
