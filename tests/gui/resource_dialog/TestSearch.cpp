// SPDX-License-Identifier: MIT
// The calls of a search, and the cache that its answers make.
#include "tests/gui/common/NamedCalls.h"
#include "tests/gui/resource_dialog/ResourceDialogTest.h"
#include "tests/support/Sanitizers.h"

#include <QFile>
#include <QRegularExpression>

#include <string>

#include <sys/mman.h>

namespace {

/// A size of this process in bytes, by its name in /proc; 0 without /proc.
qint64 processSize(const char* name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QRegularExpression pattern(QLatin1String(name) + QStringLiteral(":\\s*(\\d+) kB"));
    return pattern.match(QString::fromLatin1(status.readAll())).captured(1).toLongLong() * 1024;
}

/// Reserves the address space below the peak: from now on every new need raises the peak.
class AddressSpaceBelowThePeak
{
public:
    AddressSpaceBelowThePeak()
        : m_size(static_cast<std::size_t>(processSize("VmPeak") - processSize("VmSize")))
    {
        if (m_size > 0) {
            m_start = ::mmap(nullptr, m_size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        }
    }
    ~AddressSpaceBelowThePeak()
    {
        if (m_start != MAP_FAILED) {
            ::munmap(m_start, m_size);
        }
    }
    AddressSpaceBelowThePeak(const AddressSpaceBelowThePeak&) = delete;
    AddressSpaceBelowThePeak& operator=(const AddressSpaceBelowThePeak&) = delete;

private:
    std::size_t m_size;
    void* m_start = MAP_FAILED;
};

} // namespace

class TestSearch : public guitest::ResourceDialogTest
{
    Q_OBJECT

private slots:
    // First: what other cases allocate hides what this one measures.
    /// Room for four million strings would take 32 MB of address space.
    void falseCountReservesNoMemory()
    {
        qunsetenv("QVVISA_BENCH_LOG");
        const AddressSpaceBelowThePeak below;
        const qint64 before = processSize("VmPeak");
        search("resource b\nresource a\ncount 4000000\n");
        QVERIFY(processSize("VmPeak") - before < qint64{16} * 1024 * 1024);
        QCOMPARE(cached(), QStringLiteral("a b"));
    }

    void callsAndCacheFollowTheAnswers_data()
    {
        columns<QByteArray, QString, QString>("bench", "calls", "cached");
        const auto row = [](const char* name, const char* bench, const QString& calls,
                            const char* cached) {
            QTest::newRow(name) << QByteArray(bench) << calls << QString::fromLatin1(cached);
        };
        const QString open = QStringLiteral("viOpenDefaultRM() -> VI_SUCCESS, session=RM\n"
                                            "viSetAttribute(RM, 0x0E5A0002, 7) -> VI_SUCCESS\n"
                                            "viSetAttribute(RM, 0x0E5A0001, 1000) -> VI_SUCCESS\n");
        const QString closeBoth =
            QStringLiteral("viClose(LIST) -> VI_SUCCESS\nviClose(RM) -> VI_SUCCESS");
        const QString close = QStringLiteral("viClose(RM) -> VI_SUCCESS");
        const auto find = [](int count, const char* status = "VI_SUCCESS") {
            return QStringLiteral("viFindRsrc(RM, \"?*\") -> %1, list=LIST, count=%2, "
                                  "description=\"b\"\n")
                .arg(QLatin1String(status))
                .arg(count);
        };
        const auto next = [](const char* answer) {
            return QStringLiteral("viFindNext(LIST) -> %1\n").arg(QLatin1String(answer));
        };
        const auto delivers = [next](const char* description) {
            return next(qPrintable(
                QStringLiteral("VI_SUCCESS, description=\"%1\"").arg(QLatin1String(description))));
        };

        row("one resource", "resource b\n", open + find(1) + closeBoth, "b");
        row("three resources", "resource b\nresource a\nresource c\n",
            open + find(3) + delivers("a") + delivers("c") + closeBoth, "a b c");
        row("no resource", "",
            open + QStringLiteral("viFindRsrc(RM, \"?*\") -> VI_ERROR_RSRC_NFOUND\n") + close, "");
        row("opening fails", "resource b\nstatus viOpenDefaultRM VI_ERROR_ALLOC\n",
            QStringLiteral("viOpenDefaultRM() -> VI_ERROR_ALLOC\n"
                           "viSetAttribute(0, 0x0E5A0002, 7) -> VI_ERROR_INV_OBJECT\n"
                           "viSetAttribute(0, 0x0E5A0001, 1000) -> VI_ERROR_INV_OBJECT\n"
                           "viFindRsrc(0, \"?*\") -> VI_ERROR_INV_OBJECT\n"
                           "viClose(0) -> VI_WARN_NULL_OBJECT"),
            "");
        row("search fails", "resource b\nstatus viFindRsrc VI_ERROR_SYSTEM_ERROR\n",
            open + QStringLiteral("viFindRsrc(RM, \"?*\") -> VI_ERROR_SYSTEM_ERROR\n") + close, "");
        // Anything but success ends the search, and the find list stays open.
        row("search warns", "resource b\nresource a\nstatus viFindRsrc 0x3FFF0085\n",
            open + find(2, "VI_WARN_UNKNOWN_STATUS") + close, "");
        row("count 0", "resource b\nresource a\ncount 0\n", open + find(0) + close, "");
        row("count too great", "resource b\ncount 3\n",
            open + find(3) + next("VI_ERROR_RSRC_NFOUND") + next("VI_ERROR_RSRC_NFOUND") +
                closeBoth,
            "b");
        row("count too small", "resource b\nresource a\nresource c\ncount 2\n",
            open + find(2) + delivers("a") + closeBoth, "a b");
        row("closing fails", "resource b\nstatus viClose VI_ERROR_CLOSING_FAILED\n",
            open + find(1) +
                QStringLiteral("viClose(LIST) -> VI_ERROR_CLOSING_FAILED\n"
                               "viClose(RM) -> VI_ERROR_CLOSING_FAILED"),
            "b");
    }

    void callsAndCacheFollowTheAnswers()
    {
        QFETCH(const QByteArray, bench);
        search(bench.toStdString());
        QTEST(guitest::namedCalls(this->bench()).join(QLatin1Char('\n')), "calls");
        QTEST(cached(), "cached");
    }

    void failingDescriptionIsLeftOut_data()
    {
        columns<QByteArray, QString>("answer", "cached");
        QTest::newRow("first fails") << QByteArray("VI_ERROR_TMO at=1") << "a c d";
        QTest::newRow("second fails") << QByteArray("VI_ERROR_TMO at=2") << "a b d";
        QTest::newRow("last fails") << QByteArray("VI_ERROR_TMO at=3") << "a b c";
        QTest::newRow("second warns") << QByteArray("0x3FFF0085 at=2") << "a b d";
        QTest::newRow("all fail") << QByteArray("VI_ERROR_IO") << "a";
    }

    void failingDescriptionIsLeftOut()
    {
        QFETCH(const QByteArray, answer);
        search("resource a\nresource b\nresource c\nresource d\nstatus viFindNext " +
               answer.toStdString() + "\n");
        QTEST(cached(), "cached");
        const QStringList calls = guitest::namedCalls(bench());
        QCOMPARE(calls.filter(QStringLiteral("viFindNext(LIST)")).size(), 3);
        QVERIFY(calls.contains(QStringLiteral("viClose(LIST) -> VI_SUCCESS")));
    }

    void descriptionsAreSortedByCodeUnits_data()
    {
        columns<QByteArray, QString>("bench", "cached");
        const auto row = [](const char* name, const QByteArray& bench, const char* cached) {
            QTest::newRow(name) << bench << QString::fromUtf8(cached);
        };
        row("interfaces",
            "resource USB0::1::2::3::INSTR\nresource TCPIP0::b::inst0::INSTR\nresource "
            "ASRL1::INSTR\n"
            "resource GPIB0::20::INSTR\nresource TCPIP0::a::inst0::INSTR\n",
            "ASRL1::INSTR GPIB0::20::INSTR TCPIP0::a::inst0::INSTR TCPIP0::b::inst0::INSTR "
            "USB0::1::2::3::INSTR");
        row("case, numbers and language do not matter",
            "resource asrl\nresource Zeta\nresource \"\\xC3\\xA4\"\nresource ASRL10\nresource "
            "ASRL9\n"
            "resource z\nresource _\nresource \"\\xEF\\xBD\\x81\"\nresource "
            "\"\\xF0\\x9F\\x94\\x8C\"\n",
            "ASRL10 ASRL9 Zeta _ asrl z \u00e4 \U0001F50C \uff41");
        row("duplicates kept", "resource b\nresource a\nresource b\nresource b\n", "a b b b");
        row("empty description", "resource b\nresource \"\"\n", " b");
        row("blanks kept", "resource \" b \"\n", " b ");
        row("not UTF-8", "resource \"M\\xFCller\"\n", "M\ufffdller");
        row("cut within a character", "resource \"M\\xC3\"\n", "M\ufffd");
        const QByteArray longest(255, 'L');
        row("255 characters", "resource " + longest + '\n', longest.constData());
        row("no end", "resource b no-end\nresource a\n",
            ("a b" + QByteArray(255, 'x')).constData());
    }

    void descriptionsAreSortedByCodeUnits()
    {
        QFETCH(const QByteArray, bench);
        search(bench.toStdString());
        QTEST(cached(), "cached");
    }

    void millionResourcesAreListed()
    {
        const int count = support::isSanitized ? 100000 : 1000000;
        qunsetenv("QVVISA_BENCH_LOG");
        search("resource TCPIP0::h{n}::inst0::INSTR repeat=" + std::to_string(count) + '\n');
        construct();
        QCOMPARE(list().count(), count);
        QCOMPARE(list().item(0)->text(), QStringLiteral("TCPIP0::h%1::inst0::INSTR").arg(count));
        QCOMPARE(list().item(count - 1)->text(), QStringLiteral("TCPIP0::h9::inst0::INSTR"));
    }

private:
    /// No other case finds this resource.
    void setUp() override { scan("resource left::over\n"); }
    void search(const std::string& benchLines)
    {
        bench().write(benchLines);
        gui::ResourceDialog::updateResourceList();
    }
};

static const guitest::Registration<TestSearch> s_registerSearch;
#include "TestSearch.moc"
