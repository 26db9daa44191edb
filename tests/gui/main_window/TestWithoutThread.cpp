// SPDX-License-Identifier: MIT
// The main window on a system that has no thread to spare for its search.
#include "gui/ResourceDialog.h"
#include "tests/gui/main_window/MainWindowCase.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/ModalWindows.h"

#include <QListWidget>
#include <QToolButton>

#include <atomic>
#include <cerrno>
#include <optional>

#include <dlfcn.h>
#include <pthread.h>

namespace {

/// The next thread that anything asks for is not made.
std::atomic<bool> s_refusesNext{false};

} // namespace

/// Stands before the system's function of that name.
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

class TestWithoutThread : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void searchesWhenAsked();
};

void TestWithoutThread::searchesWhenAsked()
{
    std::optional<guitest::MainWindowCase> test(std::in_place, configuration(), "A=ASRL1::INSTR\n",
                                                "resource GPIB0::1::INSTR\n");
    s_refusesNext = true;
    test->show();
    QVERIFY(!s_refusesNext);
    QVERIFY(test->bench().calls().empty());

    test->clickCell(0, 0);
    const support::ModalAnswer<gui::ResourceDialog> answer([](gui::ResourceDialog& dialog) {
        auto& list = support::child<QListWidget>(dialog, "rsrcList");
        QCOMPARE(list.count(), 0);
        QTest::mouseClick(&support::child<QToolButton>(dialog, "refreshButton"), Qt::LeftButton);
        QCOMPARE(list.count(), 1);
        list.setCurrentRow(0);
        dialog.accept();
    });
    test->click("actionFind");
    QVERIFY(answer.wasShown());
    QCOMPARE(test->text(0, 0), QStringLiteral("GPIB0::1::INSTR"));
    test.reset();
}

static const guitest::Registration<TestWithoutThread> s_registration;
#include "TestWithoutThread.moc"
