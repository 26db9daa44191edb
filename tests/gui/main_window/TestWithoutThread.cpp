// SPDX-License-Identifier: MIT
// The main window on a system that cannot create a thread for its search.
#include "gui/ResourceDialog.h"
#include "tests/gui/main_window/MainWindowTest.h"

#include <QToolButton>

#include <atomic>
#include <cerrno>

#include <dlfcn.h>
#include <pthread.h>

namespace {

/// The next call of pthread_create fails.
std::atomic<bool> s_refusesNext{false};

} // namespace

/// Replaces the system's function in this program.
extern "C" [[gnu::visibility("default")]] int pthread_create(pthread_t* thread,
                                                             const pthread_attr_t* attributes,
                                                             void* (*start)(void*),
                                                             void* argument) noexcept
{
    if (s_refusesNext.exchange(false)) {
        return EAGAIN;
    }
    using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    static const auto s_create = reinterpret_cast<Create>(::dlsym(RTLD_NEXT, "pthread_create"));
    return s_create(thread, attributes, start, argument);
}

class TestWithoutThread : public guitest::MainWindowTest
{
    Q_OBJECT

private slots:
    void windowOpensAndSearchesOnRefresh()
    {
        s_refusesNext = true;
        start("A=ASRL1::INSTR\n", "resource GPIB0::1::INSTR\n");
        QVERIFY(!s_refusesNext);
        QVERIFY(bench().calls().empty());

        clickCell(0, 0);
        clickAndAnswer<gui::ResourceDialog>("actionFind", [](gui::ResourceDialog& dialog) {
            auto& list = support::child<QListWidget>(dialog, "rsrcList");
            QCOMPARE(list.count(), 0);
            QTest::mouseClick(&support::child<QToolButton>(dialog, "refreshButton"),
                              Qt::LeftButton);
            QCOMPARE(list.count(), 1);
            list.setCurrentRow(0);
            dialog.accept();
        });
        QCOMPARE(text(0, 0), QStringLiteral("GPIB0::1::INSTR"));
    }
};

static const guitest::Registration<TestWithoutThread> s_registerWithoutThread;
#include "TestWithoutThread.moc"
