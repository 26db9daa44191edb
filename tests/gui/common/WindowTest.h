// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/BenchFixture.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/QtWarnings.h"
#include "tests/support/TemporaryFolder.h"

#include <QObject>
#include <QString>
#include <QTest>

#include <functional>
#include <memory>
#include <optional>

namespace guitest {

/// Base of the Qt Test classes. Each case starts with empty settings, a configuration file without
/// entries and a bench without instruments, all its own, and fails if Qt or the program printed a
/// warning. GUI thread only.
class WindowTest : public QObject
{
    Q_OBJECT

protected:
    enum class Visa
    {
        Simulator,
        /// The class is skipped on a machine that has a VISA library.
        None
    };
    explicit WindowTest(Visa visa = Visa::Simulator) : m_visa(visa) {}

    /// Called at the start of each case.
    virtual void setUp() {}
    /// Called at the end of each case, also after a failure; destroys the windows that setUp() or
    /// the case made. A search that waits for the bench's file "go" has been released before.
    virtual void tearDown() {}

    /// The file that the store reads. It keeps its path for the whole process.
    static support::ConfigurationFixture& configuration();
    support::BenchFixture& bench() { return *m_bench; }
    /// The bytes of the settings file.
    static QString settingsFile();
    /// Adds the columns of a case's data: columns<int, QString>("row", "text").
    template <typename... Types, typename... Names>
    static void columns(Names... names)
    {
        static_assert(sizeof...(Types) == sizeof...(Names));
        (QTest::addColumn<Types>(names), ...);
    }

private slots:
    void initTestCase();
    void init();
    void cleanup();

private:
    Visa m_visa;
    std::optional<support::TemporaryFolder> m_settings;
    std::optional<support::BenchFixture> m_bench;
    std::optional<support::QtWarnings> m_warnings;
};

/// Adds a test class to the program's main(), under the given name.
void registerTestClass(const char* name, std::function<std::unique_ptr<QObject>()> create);

/// One static object of this type makes a test class known to main().
template <typename Test>
class Registration
{
public:
    Registration()
    {
        registerTestClass(Test::staticMetaObject.className(),
                          [] { return std::make_unique<Test>(); });
    }
};

} // namespace guitest
