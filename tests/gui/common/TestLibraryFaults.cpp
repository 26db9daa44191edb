// SPDX-License-Identifier: MIT
// Both searches on a VISA library with each fault alone, and with each two faults together.
#include "gui/VisaSearch.h"
#include "tests/gui/common/WindowTest.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace {

enum Call
{
    Open,
    SetAttribute,
    Find,
    Next,
    Parse,
    Close
};

enum Answer
{
    Success,
    Error,
    Warning
};

struct Resource
{
    /// As in a bench file.
    std::string line;
    QString text;
    /// The interface number of a serial port.
    std::optional<int> port;
};

/// A library with faults: the bench for the simulator, and what each search has to find with it.
class FaultyLibrary
{
public:
    /// Three serial ports, and six other resources.
    FaultyLibrary()
    {
        for (const int port : {3, 1, 2}) {
            addResource("ASRL" + std::to_string(port), QStringLiteral("ASRL%1").arg(port), port);
        }
        for (const char* other : {"g1", "g2", "g3", "g4", "g5", "g6"}) {
            addResource(other, QString::fromLatin1(other));
        }
    }

    void addResource(const std::string& name, const QString& text, std::optional<int> port = {})
    {
        const std::string interface = port ? " interface=ASRL," + std::to_string(*port) : "";
        m_resources.push_back({"resource " + name + interface + "\n", text, port});
    }
    void removeResources() { m_resources.clear(); }

    /// at: 1-based call number; 0 means every call.
    void setAnswer(Call call, Answer answer, int at = 0)
    {
        static const char* const calls[] = {"viOpenDefaultRM", "viSetAttribute", "viFindRsrc",
                                            "viFindNext",      "viParseRsrc",    "viClose"};
        static const char* const statuses[] = {"VI_SUCCESS", "VI_ERROR_IO", "0x3FFF0085"};
        m_settings += std::string("status ") + calls[call] + " " + statuses[answer];
        m_settings += at != 0 ? " at=" + std::to_string(at) + "\n" : "\n";
        m_rules.push_back({call, answer, at});
    }
    void setCount(int count)
    {
        m_settings += "count " + std::to_string(count) + "\n";
        m_count = count;
    }
    void takeTime() { m_settings += "scan-time 1\n"; }

    std::string bench() const
    {
        std::string lines;
        for (const Resource& resource : m_resources) {
            lines += resource.line;
        }
        return lines + m_settings;
    }

    /// Anything but success of the search ends it; anything but success of a step costs one
    /// resource.
    QStringList allResources() const
    {
        QStringList found;
        const int count = countOf(m_resources);
        if (answerTo(Find, 1) != Success || count == 0) {
            return found;
        }
        found.append(m_resources.empty() ? QString() : m_resources.front().text);
        for (int step = 1; step < std::min(count, int(m_resources.size())); ++step) {
            if (answerTo(Next, step) == Success) {
                found.append(m_resources[std::size_t(step)].text);
            }
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    /// TEXT=NUMBER. A warning of the search counts; anything but success of a step ends the list.
    QStringList serialPorts() const
    {
        QStringList listed;
        std::vector<Resource> hits;
        std::copy_if(m_resources.begin(), m_resources.end(), std::back_inserter(hits),
                     [](const Resource& resource) { return resource.port.has_value(); });
        const int count = countOf(hits);
        if (hits.empty()) {
            // A false count comes with an empty description, which cannot be parsed.
            hits.push_back({"", QString(), 0});
        }
        for (int i = 0; i < std::min(count, int(hits.size())); ++i) {
            if (i > 0 && answerTo(Next, i) != Success) {
                break;
            }
            const Resource& hit = hits[std::size_t(i)];
            const int number = answerTo(Parse, i + 1) == Error ? 0 : *hit.port;
            listed.append(QStringLiteral("%1=%2").arg(hit.text).arg(number));
        }
        return listed;
    }

private:
    struct Rule
    {
        Call call;
        Answer answer;
        int at;
    };

    /// The last rule for a call counts.
    Answer answerTo(Call call, int number) const
    {
        const auto rule = std::find_if(m_rules.rbegin(), m_rules.rend(), [&](const Rule& each) {
            return each.call == call && (each.at == 0 || each.at == number);
        });
        return rule != m_rules.rend() ? rule->answer : Success;
    }
    int countOf(const std::vector<Resource>& hits) const
    {
        const bool fails = answerTo(Open, 1) == Error || answerTo(Find, 1) == Error;
        return fails ? 0 : m_count.value_or(int(hits.size()));
    }

    std::vector<Resource> m_resources;
    std::string m_settings;
    std::vector<Rule> m_rules;
    std::optional<int> m_count;
};

using Library = FaultyLibrary;

struct Fault
{
    const char* name;
    void (*addTo)(Library&);
    /// With this fault alone, separated by blanks.
    const char* allResources;
    const char* serialPorts;
};

const char* const s_all = "ASRL1 ASRL2 ASRL3 g1 g2 g3 g4 g5 g6";
const char* const s_ports = "ASRL3=3 ASRL1=1 ASRL2=2";

// clang-format off
const Fault s_faults[] = {
    {"opening fails", [](Library& l) { l.setAnswer(Open, Error); }, "", ""},
    {"opening warns", [](Library& l) { l.setAnswer(Open, Warning); }, s_all, s_ports},
    {"attributes refused", [](Library& l) { l.setAnswer(SetAttribute, Error); }, s_all, s_ports},
    {"second attribute refused", [](Library& l) { l.setAnswer(SetAttribute, Error, 2); }, s_all, s_ports},
    {"search fails", [](Library& l) { l.setAnswer(Find, Error); }, "", ""},
    {"search warns", [](Library& l) { l.setAnswer(Find, Warning); }, "", s_ports},
    {"search takes time", [](Library& l) { l.takeTime(); }, s_all, s_ports},
    {"no resources", [](Library& l) { l.removeResources(); }, "", ""},
    {"count of 0", [](Library& l) { l.setCount(0); }, "", ""},
    {"count of 1", [](Library& l) { l.setCount(1); }, "ASRL3", "ASRL3=3"},
    {"count of 2", [](Library& l) { l.setCount(2); }, "ASRL1 ASRL3", "ASRL3=3 ASRL1=1"},
    {"count of 100", [](Library& l) { l.setCount(100); }, s_all, s_ports},
    {"first step fails", [](Library& l) { l.setAnswer(Next, Error, 1); }, "ASRL2 ASRL3 g1 g2 g3 g4 g5 g6", "ASRL3=3"},
    {"second step fails", [](Library& l) { l.setAnswer(Next, Error, 2); }, "ASRL1 ASRL3 g1 g2 g3 g4 g5 g6", "ASRL3=3 ASRL1=1"},
    {"every step fails", [](Library& l) { l.setAnswer(Next, Error); }, "ASRL3", "ASRL3=3"},
    {"first step warns", [](Library& l) { l.setAnswer(Next, Warning, 1); }, "ASRL2 ASRL3 g1 g2 g3 g4 g5 g6", "ASRL3=3"},
    {"every step warns", [](Library& l) { l.setAnswer(Next, Warning); }, "ASRL3", "ASRL3=3"},
    {"first parse fails", [](Library& l) { l.setAnswer(Parse, Error, 1); }, s_all, "ASRL3=0 ASRL1=1 ASRL2=2"},
    {"every parse fails", [](Library& l) { l.setAnswer(Parse, Error); }, s_all, "ASRL3=0 ASRL1=0 ASRL2=0"},
    {"every parse warns", [](Library& l) { l.setAnswer(Parse, Warning); }, s_all, s_ports},
    {"nothing closes", [](Library& l) { l.setAnswer(Close, Error); }, s_all, s_ports},
    {"first close fails", [](Library& l) { l.setAnswer(Close, Error, 1); }, s_all, s_ports},
    {"empty description", [](Library& l) { l.addResource("\"\"", QString()); }, " ASRL1 ASRL2 ASRL3 g1 g2 g3 g4 g5 g6", s_ports},
    {"port twice", [](Library& l) { l.addResource("ASRL1", QStringLiteral("ASRL1"), 1); }, "ASRL1 ASRL1 ASRL2 ASRL3 g1 g2 g3 g4 g5 g6", "ASRL3=3 ASRL1=1 ASRL2=2 ASRL1=1"},
    {"not UTF-8", [](Library& l) { l.addResource("ASRL\\xFC", QStringLiteral("ASRL\ufffd"), 7); }, "ASRL1 ASRL2 ASRL3 ASRL\xEF\xBF\xBD g1 g2 g3 g4 g5 g6", "ASRL3=3 ASRL1=1 ASRL2=2 ASRL\xEF\xBF\xBD=7"},
};
// clang-format on

} // namespace

class TestLibraryFaults : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void oneFault_data()
    {
        QTest::addColumn<int>("fault");
        int index = 0;
        for (const Fault& fault : s_faults) {
            QTest::newRow(fault.name) << index++;
        }
    }

    void oneFault()
    {
        QFETCH(const int, fault);
        Library library;
        s_faults[fault].addTo(library);
        // A prediction for two faults is worth nothing if it is wrong for one.
        QCOMPARE(library.allResources().join(QLatin1Char(' ')),
                 QString::fromUtf8(s_faults[fault].allResources));
        QCOMPARE(library.serialPorts().join(QLatin1Char(' ')),
                 QString::fromUtf8(s_faults[fault].serialPorts));
        search(library);
    }

    void twoFaults_data()
    {
        columns<int, int>("first", "second");
        for (int first = 0; first < int(std::size(s_faults)); ++first) {
            for (int second = first + 1; second < int(std::size(s_faults)); ++second) {
                QTest::addRow("%s, %s", s_faults[first].name, s_faults[second].name)
                    << first << second;
            }
        }
    }

    void twoFaults()
    {
        QFETCH(const int, first);
        QFETCH(const int, second);
        Library library;
        s_faults[first].addTo(library);
        s_faults[second].addTo(library);
        search(library);
    }

private:
    void search(const Library& library)
    {
        bench().write(library.bench());
        QCOMPARE(gui::findAllResources(), library.allResources());
        QStringList ports;
        for (const gui::SerialPort& port : gui::findSerialPorts()) {
            ports.append(QStringLiteral("%1=%2").arg(port.resource).arg(port.interfaceNumber));
        }
        QCOMPARE(ports, library.serialPorts());
    }
};

static const guitest::Registration<TestLibraryFaults> s_registerLibraryFaults;
#include "TestLibraryFaults.moc"
