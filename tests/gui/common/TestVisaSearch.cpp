// SPDX-License-Identifier: MIT
// Both searches on libraries with and without faults: their calls, and what they find.
#include "gui/VisaSearch.h"
#include "tests/gui/common/WindowTest.h"
#include "tests/support/Sanitizers.h"

#include <QRegularExpression>

#include <fstream>
#include <string>
#include <utility>

#include <sys/resource.h>
#include <unistd.h>

namespace {

QString foundResources()
{
    return gui::findAllResources().join(QLatin1Char(' '));
}

/// "TEXT=NUMBER TEXT=NUMBER"
QString foundPorts()
{
    QStringList ports;
    for (const gui::SerialPort& port : gui::findSerialPorts()) {
        ports.append(QStringLiteral("%1=%2").arg(port.resource).arg(port.interfaceNumber));
    }
    return ports.join(QLatin1Char(' '));
}

/// While it lives, this process gets hardly any more address space than it has.
class AddressSpaceLimit
{
public:
    AddressSpaceLimit()
    {
        ::getrlimit(RLIMIT_AS, &m_former);
        rlim_t pages = 0;
        // Not on all systems.
        if (std::ifstream("/proc/self/statm") >> pages) {
            rlimit limit = m_former;
            limit.rlim_cur = pages * rlim_t(::sysconf(_SC_PAGESIZE)) + rlim_t{16 << 20};
            ::setrlimit(RLIMIT_AS, &limit);
        }
    }
    ~AddressSpaceLimit() { ::setrlimit(RLIMIT_AS, &m_former); }
    AddressSpaceLimit(const AddressSpaceLimit&) = delete;
    AddressSpaceLimit& operator=(const AddressSpaceLimit&) = delete;

private:
    rlimit m_former{};
};

} // namespace

class TestVisaSearch : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void callsFollowTheAnswers_data()
    {
        columns<QByteArray, QString, QString>("answers", "forResources", "forPorts");
        const auto row = [](const char* name, const char* answers, const QString& forResources,
                            const QString& forPorts) {
            QTest::newRow(name) << QByteArray(answers) << forResources << forPorts;
        };
        const QString resources =
            QStringLiteral("viOpenDefaultRM() viSetAttribute(RM, 0x0E5A0002, 7) "
                           "viSetAttribute(RM, 0x0E5A0001, 1000) viFindRsrc(RM, \"?*\")");
        const QString ports = QStringLiteral(
            "viOpenDefaultRM() viSetAttribute(RM, 0x0E5A0002, 0) viFindRsrc(RM, \"ASRL?*\")");
        const auto withoutSession = [](QString calls) {
            return calls.replace(QLatin1String("RM,"), QLatin1String("0,"));
        };
        const QString nextResource = QStringLiteral(" viFindNext(LIST)");
        const QString nextPort = QStringLiteral(
            " viParseRsrc(RM, \"ASRL1\") viFindNext(LIST) viParseRsrc(RM, \"ASRL2\") "
            "viFindNext(LIST)");
        const QString closeList = QStringLiteral(" viClose(LIST)");
        const QString close = QStringLiteral(" viClose(RM)");

        row("success", "", resources + nextResource + closeList + close,
            ports + nextPort + closeList + close);
        row("opening fails", "status viOpenDefaultRM VI_ERROR_ALLOC",
            withoutSession(resources) + QStringLiteral(" viClose(0)"),
            withoutSession(ports) + QStringLiteral(" viClose(0)"));
        row("attributes refused", "status viSetAttribute VI_ERROR_NSUP_ATTR",
            resources + nextResource + closeList + close, ports + nextPort + closeList + close);
        row("search fails", "status viFindRsrc VI_ERROR_SYSTEM_ERROR", resources + close,
            ports + close);
        // For resources, the find list stays open unless something was found with plain success.
        row("search warns", "status viFindRsrc 0x3FFF0085", resources + close,
            ports + nextPort + closeList + close);
        row("count of 0", "count 0", resources + close, ports + closeList + close);
        row("step fails", "status viFindNext VI_ERROR_IO",
            resources + nextResource + closeList + close,
            ports + QStringLiteral(" viParseRsrc(RM, \"ASRL1\") viFindNext(LIST)") + closeList +
                close);
        row("closing fails", "status viClose VI_ERROR_CLOSING_FAILED",
            resources + nextResource + closeList + close, ports + nextPort + closeList + close);
    }

    void callsFollowTheAnswers()
    {
        QFETCH(const QByteArray, answers);
        bench().write("resource ASRL1\nresource ASRL2\n" + answers.toStdString() + '\n');
        gui::findAllResources();
        QTEST(takeCalls(), "forResources");
        gui::findSerialPorts();
        QTEST(takeCalls(), "forPorts");
    }

    void answersDecideWhatIsFound_data()
    {
        columns<QByteArray, QString, QString>("answers", "resources", "ports");
        const auto row = [](const char* name, const char* answers, const char* resources,
                            const char* ports) {
            QTest::newRow(name) << QByteArray(answers) << QString::fromUtf8(resources)
                                << QString::fromUtf8(ports);
        };
        const char* all = "ASRL1 ASRL2 ASRL3 g1 g2";
        const char* ports = "ASRL3=3 ASRL1=1 ASRL2=2";

        row("no fault", "", all, ports);
        row("opening fails", "status viOpenDefaultRM VI_ERROR_IO", "", "");
        row("opening warns", "status viOpenDefaultRM 0x3FFF0085", all, ports);
        row("attributes refused", "status viSetAttribute VI_ERROR_IO", all, ports);
        row("search fails", "status viFindRsrc VI_ERROR_IO", "", "");
        row("search warns", "status viFindRsrc 0x3FFF0085", "", ports);
        row("search takes time", "scan-time 1", all, ports);
        row("count of 0", "count 0", "", "");
        row("count of 1", "count 1", "ASRL3", "ASRL3=3");
        row("count of 2", "count 2", "ASRL1 ASRL3", "ASRL3=3 ASRL1=1");
        row("count of 100", "count 100", all, ports);
        // A step that fails costs one resource, but ends the list of ports.
        row("first step fails", "status viFindNext VI_ERROR_IO at=1", "ASRL2 ASRL3 g1 g2",
            "ASRL3=3");
        row("second step fails", "status viFindNext VI_ERROR_IO at=2", "ASRL1 ASRL3 g1 g2",
            "ASRL3=3 ASRL1=1");
        row("last step fails", "status viFindNext VI_ERROR_IO at=4", "ASRL1 ASRL2 ASRL3 g2", ports);
        row("every step fails", "status viFindNext VI_ERROR_IO", "ASRL3", "ASRL3=3");
        row("first step warns", "status viFindNext 0x3FFF0085 at=1", "ASRL2 ASRL3 g1 g2",
            "ASRL3=3");
        // Without a number of its own, a port does not get that of the one before.
        row("second parse fails", "status viParseRsrc VI_ERROR_IO at=2", all,
            "ASRL3=3 ASRL1=0 ASRL2=2");
        row("every parse fails", "status viParseRsrc VI_ERROR_IO", all, "ASRL3=0 ASRL1=0 ASRL2=0");
        row("every parse warns", "status viParseRsrc 0x3FFF0085", all, ports);
        row("nothing closes", "status viClose VI_ERROR_IO", all, ports);
        row("port twice", "resource ASRL1", "ASRL1 ASRL1 ASRL2 ASRL3 g1 g2",
            "ASRL3=3 ASRL1=1 ASRL2=2 ASRL1=1");
        row("empty description", "resource \"\"", " ASRL1 ASRL2 ASRL3 g1 g2", ports);
        row("not UTF-8", "resource \"ASRL\\xFC\" interface=ASRL,65535",
            "ASRL1 ASRL2 ASRL3 ASRL\uFFFD g1 g2", "ASRL3=3 ASRL1=1 ASRL2=2 ASRL\uFFFD=65535");
        row("sorted by code units", "resource G\nresource \"\\xC3\\xA4\"\nresource ASRL10",
            "ASRL1 ASRL10 ASRL2 ASRL3 G g1 g2 \u00e4", "ASRL3=3 ASRL1=1 ASRL2=2 ASRL10=10");
    }

    void answersDecideWhatIsFound()
    {
        QFETCH(const QByteArray, answers);
        bench().write("resource ASRL3\nresource ASRL1\nresource ASRL2\nresource g2\nresource g1\n" +
                      answers.toStdString() + '\n');
        QTEST(foundResources(), "resources");
        QTEST(foundPorts(), "ports");
    }

    void nothingIsFoundWithoutResources()
    {
        QCOMPARE(gui::findAllResources(), QStringList());
        QCOMPARE(foundPorts(), QString());
        // A false count comes with an empty description.
        bench().write("count 3\n");
        QCOMPARE(gui::findAllResources(), QStringList(QString()));
        QCOMPARE(foundPorts(), QStringLiteral("=0"));
    }

    void descriptionWithoutEndIsCutAtTheBuffer()
    {
        bench().write("resource ASRL2 no-end\nresource ASRL5\n");
        const QString cut = QStringLiteral("ASRL2").leftJustified(256, QLatin1Char('x'));
        QCOMPARE(foundResources(), cut + QStringLiteral(" ASRL5"));
        QVERIFY(foundPorts().startsWith(cut + QLatin1Char('=')));
        QVERIFY(foundPorts().endsWith(QStringLiteral(" ASRL5=5")));
    }

    /// Memory for four million strings would take 32 MB of address space.
    void falseCountReservesNoMemory()
    {
        qunsetenv("QVVISA_BENCH_LOG");
        bench().write("resource b\nresource a\ncount 4000000\n");
        const AddressSpaceLimit limit;
        QCOMPARE(foundResources(), QStringLiteral("a b"));
    }

    void millionResourcesAreFound()
    {
        const int count = support::isSanitized ? 100000 : 1000000;
        qunsetenv("QVVISA_BENCH_LOG");
        bench().write("resource ASRL{n} repeat=" + std::to_string(count) + '\n');
        const QStringList resources = gui::findAllResources();
        QCOMPARE(resources.size(), count);
        QCOMPARE(resources.first(), QStringLiteral("ASRL1"));
        QCOMPARE(resources.last(), QStringLiteral("ASRL%1").arg(count - 1));
    }

private:
    /// The calls since the last time without their results, RM for the session and LIST for the
    /// find list.
    QString takeCalls()
    {
        QStringList calls;
        for (const std::string& call : bench().calls()) {
            calls.append(QString::fromStdString(call));
        }
        bench().clearCalls();
        const QString log = calls.join(QLatin1Char(' '));
        const auto number = [&log](const char* result) {
            return QRegularExpression(QLatin1String(result) + QStringLiteral("=(\\d+)"))
                .match(log)
                .captured(1);
        };
        calls.replaceInStrings(QRegularExpression(QStringLiteral(" -> .*")), QString());
        for (const auto& [result, name] :
             {std::pair("session", "(RM"), std::pair("list", "(LIST")}) {
            if (const QString found = number(result); !found.isEmpty()) {
                calls.replaceInStrings(QRegularExpression(QStringLiteral("\\(%1\\b").arg(found)),
                                       QString::fromLatin1(name));
            }
        }
        return calls.join(QLatin1Char(' '));
    }
};

static const guitest::Registration<TestVisaSearch> s_registerVisaSearch;
#include "TestVisaSearch.moc"
