// SPDX-License-Identifier: MIT
// What a scan asks of the VISA library, and what it makes of good and bad answers.
#include "gui/ResourceDialog.h"
#include "tests/gui/shared/NamedCalls.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/BenchFixture.h"
#include "tests/support/Children.h"
#include "tests/support/Sanitizers.h"

#include <QFile>
#include <QListWidget>
#include <QRegularExpression>

#include <cstddef>
#include <optional>
#include <string>

#include <sys/mman.h>

using guitest::namedCalls;

namespace {

/// What a dialog that opens now lists.
QStringList listed()
{
    const gui::ResourceDialog dialog(nullptr);
    const auto& list = support::child<QListWidget>(dialog, "rsrcList");
    QStringList texts;
    for (int row = 0; row < list.count(); ++row) {
        texts.append(list.item(row)->text());
    }
    return texts;
}

/// A size that the system tells of the process, in bytes; 0 where it does not.
qint64 told(const QString& key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QRegularExpression pattern(key + QStringLiteral(":\\s*(\\d+) kB"));
    return pattern.match(QString::fromLatin1(status.readAll())).captured(1).toLongLong() * 1024;
}

/// The most address space that the process had so far.
qint64 peakAddressSpace()
{
    return told(QStringLiteral("VmPeak"));
}

/// Takes what address space is left below the peak: from now on each need of more raises it.
class AddressSpaceUpToThePeak
{
public:
    AddressSpaceUpToThePeak()
        : m_size(static_cast<std::size_t>(peakAddressSpace() - told(QStringLiteral("VmSize"))))
    {
        if (m_size > 0) {
            m_start = ::mmap(nullptr, m_size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        }
    }
    ~AddressSpaceUpToThePeak()
    {
        if (m_start != MAP_FAILED) {
            ::munmap(m_start, m_size);
        }
    }
    AddressSpaceUpToThePeak(const AddressSpaceUpToThePeak&) = delete;
    AddressSpaceUpToThePeak& operator=(const AddressSpaceUpToThePeak&) = delete;

private:
    std::size_t m_size;
    void* m_start = MAP_FAILED;
};

} // namespace

class TestResourceScan : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    // First: what others use up hides what this one measures.
    void believesNoCount();
    void asksInOrder_data();
    void asksInOrder();
    void lists_data();
    void lists();
    void leavesOutWhatFails_data();
    void leavesOutWhatFails();
    void replacesTheCache();
    void emptiesTheCacheWhenTheLibraryFails();
    void listsAMillion();

private:
    void setUp() override;
};

void TestResourceScan::setUp()
{
    // An entry that no case reports.
    const support::BenchFixture bench("resource left::over\n");
    gui::ResourceDialog::updateResourceList();
    QCOMPARE(listed(), QStringList(QStringLiteral("left::over")));
}

/// Room for four million strings would take 32 MB of addresses.
void TestResourceScan::believesNoCount()
{
    const support::BenchFixture bench("resource b\nresource a\ncount 4000000\n");
    qunsetenv("QVVISA_BENCH_LOG");
    const AddressSpaceUpToThePeak below;
    const qint64 before = peakAddressSpace();
    gui::ResourceDialog::updateResourceList();
    QVERIFY(peakAddressSpace() - before < 16 * 1024 * 1024);
    QCOMPARE(listed().join(QLatin1Char(' ')), QStringLiteral("a b"));
}

void TestResourceScan::asksInOrder_data()
{
    QTest::addColumn<QByteArray>("bench");
    QTest::addColumn<QString>("search");
    QTest::newRow("one") << QByteArray("resource ASRL1::INSTR\n")
                         << QStringLiteral("viFindRsrc(RM, \"?*\") -> VI_SUCCESS, list=LIST, "
                                           "count=1, description=\"ASRL1::INSTR\"\n"
                                           "viClose(LIST) -> VI_SUCCESS\n");
    QTest::newRow("three") << QByteArray("resource b\nresource a\nresource c\n")
                           << QStringLiteral("viFindRsrc(RM, \"?*\") -> VI_SUCCESS, list=LIST, "
                                             "count=3, description=\"b\"\n"
                                             "viFindNext(LIST) -> VI_SUCCESS, description=\"a\"\n"
                                             "viFindNext(LIST) -> VI_SUCCESS, description=\"c\"\n"
                                             "viClose(LIST) -> VI_SUCCESS\n");
    QTest::newRow("none") << QByteArray()
                          << QStringLiteral("viFindRsrc(RM, \"?*\") -> VI_ERROR_RSRC_NFOUND\n");
    QTest::newRow("search fails")
        << QByteArray("resource a\nstatus viFindRsrc VI_ERROR_SYSTEM_ERROR\n")
        << QStringLiteral("viFindRsrc(RM, \"?*\") -> VI_ERROR_SYSTEM_ERROR\n");
    // Anything but success ends the search, and the find list is left alone.
    QTest::newRow("search warns")
        << QByteArray("resource a\nresource b\nstatus viFindRsrc 0x3FFF0085\n")
        << QStringLiteral("viFindRsrc(RM, \"?*\") -> VI_WARN_UNKNOWN_STATUS, list=LIST, count=2, "
                          "description=\"a\"\n");
    QTest::newRow("count 0") << QByteArray("resource a\nresource b\ncount 0\n")
                             << QStringLiteral("viFindRsrc(RM, \"?*\") -> VI_SUCCESS, list=LIST, "
                                               "count=0, description=\"a\"\n");
    QTest::newRow("count too large")
        << QByteArray("resource a\ncount 3\n")
        << QStringLiteral("viFindRsrc(RM, \"?*\") -> VI_SUCCESS, list=LIST, count=3, "
                          "description=\"a\"\n"
                          "viFindNext(LIST) -> VI_ERROR_RSRC_NFOUND\n"
                          "viFindNext(LIST) -> VI_ERROR_RSRC_NFOUND\n"
                          "viClose(LIST) -> VI_SUCCESS\n");
    QTest::newRow("count too small")
        << QByteArray("resource a\nresource b\nresource c\ncount 2\n")
        << QStringLiteral("viFindRsrc(RM, \"?*\") -> VI_SUCCESS, list=LIST, count=2, "
                          "description=\"a\"\n"
                          "viFindNext(LIST) -> VI_SUCCESS, description=\"b\"\n"
                          "viClose(LIST) -> VI_SUCCESS\n");
    QTest::newRow("closing fails")
        << QByteArray("resource a\nstatus viClose VI_ERROR_CLOSING_FAILED\n")
        << QStringLiteral("viFindRsrc(RM, \"?*\") -> VI_SUCCESS, list=LIST, count=1, "
                          "description=\"a\"\n"
                          "viClose(LIST) -> VI_ERROR_CLOSING_FAILED\n");
}

void TestResourceScan::asksInOrder()
{
    QFETCH(const QByteArray, bench);
    QFETCH(const QString, search);
    const support::BenchFixture fixture(bench.toStdString());
    gui::ResourceDialog::updateResourceList();
    const QString closing = bench.contains("viClose") ? QStringLiteral("VI_ERROR_CLOSING_FAILED")
                                                      : QStringLiteral("VI_SUCCESS");
    const QString expected = QStringLiteral("viOpenDefaultRM() -> VI_SUCCESS, session=RM\n"
                                            "viSetAttribute(RM, 0x0E5A0002, 7) -> VI_SUCCESS\n"
                                            "viSetAttribute(RM, 0x0E5A0001, 1000) -> VI_SUCCESS\n"
                                            "%1viClose(RM) -> %2")
                                 .arg(search, closing);
    QCOMPARE(namedCalls(fixture).join(QLatin1Char('\n')), expected);
}

void TestResourceScan::lists_data()
{
    QTest::addColumn<QByteArray>("bench");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char* name, const QByteArray& bench, const char* expected) {
        QTest::newRow(name) << bench << QString::fromUtf8(expected).split(QLatin1Char('|'));
    };
    const auto empty = [](const char* name, const QByteArray& bench) {
        QTest::newRow(name) << bench << QStringList();
    };
    row("sorted",
        "resource USB0::1::2::3::INSTR\nresource TCPIP0::b::inst0::INSTR\nresource ASRL1::INSTR\n"
        "resource GPIB0::20::INSTR\nresource TCPIP0::a::inst0::INSTR\n",
        "ASRL1::INSTR|GPIB0::20::INSTR|TCPIP0::a::inst0::INSTR|TCPIP0::b::inst0::INSTR|"
        "USB0::1::2::3::INSTR");
    // Neither case nor numbers nor the language count.
    row("sorted by code units",
        "resource asrl\nresource Zeta\nresource \"\\xC3\\xA4\"\nresource ASRL10\nresource ASRL9\n"
        "resource z\nresource _\nresource \"\\xEF\\xBD\\x81\"\nresource \"\\xF0\\x9F\\x94\\x8C\"\n",
        "ASRL10|ASRL9|Zeta|_|asrl|z|\u00e4|\U0001F50C|\uff41");
    row("duplicates kept", "resource b\nresource a\nresource b\nresource b\n", "a|b|b|b");
    row("an empty one", "resource b\nresource \"\"\n", "|b");
    row("blanks kept", "resource \" b \"\n", " b ");
    row("UTF-8", "resource \"M\\xC3\\xBCller\"\n", "M\u00fcller");
    row("not UTF-8", "resource \"M\\xFCller\"\n", "M\ufffdller");
    row("cut within a character", "resource \"M\\xC3\"\n", "M\ufffd");
    empty("none", "");
    empty("library does not open", "resource a\nstatus viOpenDefaultRM VI_ERROR_SYSTEM_ERROR\n");
    row("library opens with a warning", "resource a\nstatus viOpenDefaultRM 0x3FFF0085\n", "a");
    row("attributes refused", "resource a\nstatus viSetAttribute VI_ERROR_NSUP_ATTR\n", "a");
    empty("search fails", "resource a\nstatus viFindRsrc VI_ERROR_SYSTEM_ERROR\n");
    empty("search warns", "resource a\nstatus viFindRsrc 0x3FFF0085\n");
    empty("search answers 1", "resource a\nstatus viFindRsrc 1\n");
    empty("count 0", "resource a\ncount 0\n");
    row("count 1 of 2", "resource b\nresource a\ncount 1\n", "b");
    row("count 9 of 2", "resource b\nresource a\ncount 9\n", "a|b");
    row("closing fails", "resource a\nstatus viClose VI_ERROR_CLOSING_FAILED\n", "a");
    row("every further one fails", "resource b\nresource a\nstatus viFindNext VI_ERROR_IO\n", "b");
    row("every further one warns", "resource b\nresource a\nstatus viFindNext 0x3FFF0085\n", "b");

    const QString longest(255, QLatin1Char('L'));
    QTest::newRow("255 long") << QByteArray("resource ") + longest.toLatin1() + '\n'
                              << QStringList(longest);
    const QString unended = QStringLiteral("USB0::1::2::3::INSTR");
    QTest::newRow("no end") << QByteArray("resource ") + unended.toLatin1() + " no-end\n"
                            << QStringList(unended.leftJustified(256, QLatin1Char('x')));
    QTest::newRow("no end, another behind it")
        << QByteArray("resource b no-end\nresource a\n")
        << QStringList(
               {QStringLiteral("a"), QStringLiteral("b").leftJustified(256, QLatin1Char('x'))});
}

void TestResourceScan::lists()
{
    QFETCH(const QByteArray, bench);
    const support::BenchFixture fixture(bench.toStdString());
    gui::ResourceDialog::updateResourceList();
    QTEST(listed(), "expected");
}

void TestResourceScan::leavesOutWhatFails_data()
{
    QTest::addColumn<int>("at");
    QTest::addColumn<QString>("expected");
    QTest::newRow("1") << 1 << QStringLiteral("a c d e");
    QTest::newRow("2") << 2 << QStringLiteral("a b d e");
    QTest::newRow("3") << 3 << QStringLiteral("a b c e");
    QTest::newRow("4") << 4 << QStringLiteral("a b c d");
}

/// The one that fails is left out, without a trace of the one before it.
void TestResourceScan::leavesOutWhatFails()
{
    QFETCH(const int, at);
    const support::BenchFixture bench("resource a\nresource b\nresource c\nresource d\nresource e\n"
                                      "status viFindNext VI_ERROR_TMO at=" +
                                      std::to_string(at) + "\n");
    gui::ResourceDialog::updateResourceList();
    QTEST(listed().join(QLatin1Char(' ')), "expected");
    // All four were asked for, and the find list was closed.
    QCOMPARE(namedCalls(bench).filter(QStringLiteral("viFindNext(LIST)")).size(), 4);
    QVERIFY(namedCalls(bench).contains(QStringLiteral("viClose(LIST) -> VI_SUCCESS")));
}

void TestResourceScan::replacesTheCache()
{
    support::BenchFixture bench("resource b\nresource a\n");
    gui::ResourceDialog::updateResourceList();
    bench.write("resource c\nresource a\n");
    gui::ResourceDialog::updateResourceList();
    QCOMPARE(listed().join(QLatin1Char(' ')), QStringLiteral("a c"));
    bench.write("");
    gui::ResourceDialog::updateResourceList();
    QCOMPARE(listed(), QStringList());
}

void TestResourceScan::emptiesTheCacheWhenTheLibraryFails()
{
    const support::BenchFixture bench("resource a\nstatus viOpenDefaultRM VI_ERROR_ALLOC\n");
    gui::ResourceDialog::updateResourceList();
    QCOMPARE(listed(), QStringList());
    // The calls that follow are made all the same, on no session.
    QCOMPARE(namedCalls(bench).join(QLatin1Char('\n')),
             QStringLiteral("viOpenDefaultRM() -> VI_ERROR_ALLOC\n"
                            "viSetAttribute(0, 0x0E5A0002, 7) -> VI_ERROR_INV_OBJECT\n"
                            "viSetAttribute(0, 0x0E5A0001, 1000) -> VI_ERROR_INV_OBJECT\n"
                            "viFindRsrc(0, \"?*\") -> VI_ERROR_INV_OBJECT\n"
                            "viClose(0) -> VI_WARN_NULL_OBJECT"));
}

void TestResourceScan::listsAMillion()
{
    const int count = support::isSanitized ? 100000 : 1000000;
    const support::BenchFixture bench(
        "resource TCPIP0::h{n}::inst0::INSTR repeat=" + std::to_string(count) + '\n');
    qunsetenv("QVVISA_BENCH_LOG");
    gui::ResourceDialog::updateResourceList();
    const QStringList all = listed();
    QCOMPARE(all.size(), count);
    QCOMPARE(all.first(), QStringLiteral("TCPIP0::h%1::inst0::INSTR").arg(count));
    QCOMPARE(all.last(), QStringLiteral("TCPIP0::h9::inst0::INSTR"));
}

static const guitest::Registration<TestResourceScan> s_registration;
#include "TestResourceScan.moc"
