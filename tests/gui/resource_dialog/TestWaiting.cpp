// SPDX-License-Identifier: MIT
// The find dialog and its cache while a search runs on another thread.
#include "tests/gui/common/BlockedThread.h"
#include "tests/gui/resource_dialog/ResourceDialogTest.h"
#include "tests/support/Files.h"

#include <atomic>
#include <functional>
#include <future>
#include <optional>
#include <thread>

namespace {

/// A search on a thread of its own, as the main window starts one; it returns after release().
class HeldSearch
{
public:
    explicit HeldSearch(support::BenchFixture& bench, std::string_view lines)
        : m_go(bench.pathFor("go").string())
    {
        bench.write(std::string(lines) + "wait-for-file go\n");
        bench.clearCalls();
        m_thread = std::thread([] { gui::ResourceDialog::updateResourceList(); });
        // The calls before the search for resources.
        m_isHeld = QTest::qWaitFor([&bench] { return bench.calls().size() == 3; }, 60000);
    }
    ~HeldSearch()
    {
        release();
        m_thread.join();
    }
    HeldSearch(const HeldSearch&) = delete;
    HeldSearch& operator=(const HeldSearch&) = delete;

    bool isHeld() const { return m_isHeld; }
    /// Any thread.
    void release() const { support::writeFile(m_go, ""); }

private:
    std::string m_go;
    std::thread m_thread;
    bool m_isHeld = false;
};

/// Checks a dialog when it sets the wait cursor, and releases the search as soon as the dialog's
/// thread is blocked.
class WaitingDialog : public QObject
{
public:
    WaitingDialog(const QDialog& dialog, std::function<bool()> isEnabled, const HeldSearch& search)
        : m_dialog(dialog),
          m_isEnabled(std::move(isEnabled)),
          m_search(search)
    {
        const_cast<QDialog&>(dialog).installEventFilter(this);
    }
    ~WaitingDialog() override { end(); }
    WaitingDialog(const WaitingDialog&) = delete;
    WaitingDialog& operator=(const WaitingDialog&) = delete;

    /// To be called when the dialog's thread is no longer blocked.
    void end()
    {
        m_isOver = true;
        if (m_releaser.joinable()) {
            m_releaser.join();
        }
    }

    /// After end(): the wait cursor was on the screen, the dialog's own if it is shown, otherwise
    /// that of all windows; the dialog was disabled, and then its thread blocked.
    bool waitedDisabled() const { return m_showedWaitCursor && !m_wasEnabled && m_wasBlocked; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::CursorChange && !m_releaser.joinable() &&
            m_dialog.cursor().shape() == Qt::WaitCursor) {
            const QCursor* override = QGuiApplication::overrideCursor();
            m_showedWaitCursor = m_dialog.isActiveWindow() ||
                                 (override != nullptr && override->shape() == Qt::WaitCursor);
            m_wasEnabled = m_isEnabled();
            m_releaser = std::thread([this] {
                while (!m_isOver && !m_dialogThread.isBlocked()) {
                    std::this_thread::yield();
                }
                m_wasBlocked = !m_isOver;
                m_search.release();
            });
        }
        return false;
    }

private:
    const QDialog& m_dialog;
    std::function<bool()> m_isEnabled;
    const HeldSearch& m_search;
    guitest::BlockedThread m_dialogThread;
    std::thread m_releaser;
    std::atomic<bool> m_isOver{false};
    std::atomic<bool> m_wasBlocked{false};
    bool m_showedWaitCursor = false;
    bool m_wasEnabled = false;
};

} // namespace

class TestWaiting : public guitest::ResourceDialogTest
{
    Q_OBJECT

private slots:
    /// The case does not end if the constructor waits.
    void constructionDoesNotWait()
    {
        QCOMPARE(cached(), QStringLiteral("before"));
        const HeldSearch search(bench(), "resource b\n");
        QVERIFY(search.isHeld());
        QCOMPARE(cached(), QString());
    }

    void showAndRefreshWaitForTheSearch_data()
    {
        columns<bool, std::size_t>("isRefresh", "calls");
        QTest::newRow("show, without a search of its own") << false << std::size_t{8};
        QTest::newRow("refresh, then searches itself") << true << std::size_t{16};
    }

    void showAndRefreshWaitForTheSearch()
    {
        QFETCH(const bool, isRefresh);
        construct();
        if (isRefresh) {
            show();
        }
        const HeldSearch search(bench(), "resource b\nresource a\nresource c\n");
        QVERIFY(search.isHeld());
        WaitingDialog waiting(
            dialog(), [this] { return box().isEnabled() || refresh().isEnabled(); }, search);
        if (isRefresh) {
            clickRefresh();
        } else {
            show();
        }
        waiting.end();
        QVERIFY(waiting.waitedDisabled());
        QVERIFY(QGuiApplication::overrideCursor() == nullptr);
        QCOMPARE(dialog().cursor().shape(), Qt::ArrowCursor);
        QVERIFY(box().isEnabled() && refresh().isEnabled());
        QCOMPARE(listed(), QStringLiteral("a b c"));
        QTEST(bench().calls().size(), "calls");
    }

    void showAfterTheSearchDoesNotWait()
    {
        construct();
        std::optional<HeldSearch> search(std::in_place, bench(), "resource b\n");
        QVERIFY(search->isHeld());
        search.reset();
        // Constructed before the search, the dialog keeps its copy.
        show();
        QCOMPARE(listed(), QStringLiteral("before"));
        open();
        QCOMPARE(listed(), QStringLiteral("b"));
    }

    void listIsCompleteWhenTheSearchEndsBetweenConstructionAndShow()
    {
        std::optional<HeldSearch> search(std::in_place, bench(), "resource b\nresource a\n");
        QVERIFY(search->isHeld());
        construct();
        search.reset();
        QCOMPARE(list().count(), 0);
        show();
        QCOMPARE(listed(), QStringLiteral("a b"));
    }

    void secondSearchWaitsForTheFirst()
    {
        std::optional<HeldSearch> first(std::in_place, bench(), "resource b\n");
        QVERIFY(first->isHeld());
        std::promise<guitest::BlockedThread> started;
        std::thread second([&started] {
            started.set_value(guitest::BlockedThread());
            gui::ResourceDialog::updateResourceList();
        });
        const guitest::BlockedThread secondThread = started.get_future().get();
        while (!secondThread.isBlocked()) {
            std::this_thread::yield();
        }
        first.reset();
        second.join();
        const std::vector<std::string> calls = bench().calls();
        QCOMPARE(calls.size(), std::size_t{12});
        for (const std::size_t half : {std::size_t{0}, std::size_t{6}}) {
            QVERIFY(calls[half].rfind("viOpenDefaultRM", 0) == 0);
            QVERIFY(calls[half + 3].rfind("viFindRsrc", 0) == 0);
            QVERIFY(calls[half + 5].rfind("viClose", 0) == 0);
        }
        QCOMPARE(cached(), QStringLiteral("b"));
    }

    /// Empty, or the result of one search.
    void copiesOfTheCacheAreComplete()
    {
        scan("resource c\nresource a\nresource b\n");
        std::atomic<bool> isOver{false};
        std::thread searches([&isOver] {
            for (int i = 0; i < 100; ++i) {
                gui::ResourceDialog::updateResourceList();
            }
            isOver = true;
        });
        QStringList others;
        while (!isOver) {
            const QString copy = cached();
            if (!copy.isEmpty() && copy != QLatin1String("a b c")) {
                others.append(copy);
            }
        }
        searches.join();
        QCOMPARE(others, QStringList());
        QCOMPARE(cached(), QStringLiteral("a b c"));
    }

private:
    void setUp() override { scan("resource before\n"); }
};

static const guitest::Registration<TestWaiting> s_registerWaiting;
#include "TestWaiting.moc"
