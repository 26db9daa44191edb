// SPDX-License-Identifier: MIT
// The find dialog and the properties dialog with a VISA library that misbehaves, in each way alone
// and in each two together.
#include "gui/ResourceDialog.h"
#include "tests/gui/property_dialog/PropertyDialogCase.h"
#include "tests/gui/resource_dialog/ResourceDialogCase.h"
#include "tests/gui/shared/FaultyLibrary.h"
#include "tests/gui/shared/RecordTexts.h"
#include "tests/gui/shared/WindowTest.h"
#include "tests/support/Files.h"

#include <iterator>
#include <optional>
#include <thread>

using guitest::FaultyLibrary;

namespace {

using Library = FaultyLibrary;

struct Fault
{
    const char* name;
    void (*addTo)(Library&);
    /// With this fault alone, parted by blanks: in the find dialog and in the properties dialog.
    const char* scanned;
    const char* ports;
};

const char* const s_all = "ASRL1 ASRL2 ASRL3 g1 g2 g3 g4 g5 g6";
const char* const s_threePorts = "ASRL3=3 ASRL1=1 ASRL2=2";

QString unended()
{
    return QStringLiteral("ASRL8").leftJustified(256, QLatin1Char('x'));
}

// clang-format off
const Fault s_faults[] = {
    {"opening fails", [](Library& l) { l.answer(Library::Open, Library::Error); }, "", ""},
    {"opening warns", [](Library& l) { l.answer(Library::Open, Library::Warning); }, s_all, s_threePorts},
    {"attributes refused", [](Library& l) { l.answer(Library::SetAttribute, Library::Error); }, s_all, s_threePorts},
    {"second attribute refused", [](Library& l) { l.answer(Library::SetAttribute, Library::Error, 2); }, s_all, s_threePorts},
    {"search fails", [](Library& l) { l.answer(Library::Find, Library::Error); }, "", ""},
    {"search warns", [](Library& l) { l.answer(Library::Find, Library::Warning); }, "", s_threePorts},
    {"search takes time", [](Library& l) { l.takeTime(); }, s_all, s_threePorts},
    {"search is held up", [](Library& l) { l.holdSearch(); }, s_all, s_threePorts},
    {"eighth step is held up", [](Library& l) { l.holdNext(8); }, s_all, s_threePorts},
    {"nothing there", [](Library& l) { l.removeResources(); }, "", ""},
    {"count of 0", [](Library& l) { l.tellCount(0); }, "", ""},
    {"count of 1", [](Library& l) { l.tellCount(1); }, "ASRL3", "ASRL3=3"},
    {"count of 2", [](Library& l) { l.tellCount(2); }, "ASRL1 ASRL3", "ASRL3=3 ASRL1=1"},
    {"count of 100", [](Library& l) { l.tellCount(100); }, s_all, s_threePorts},
    {"first step fails", [](Library& l) { l.answer(Library::Next, Library::Error, 1); }, "ASRL2 ASRL3 g1 g2 g3 g4 g5 g6", "ASRL3=3"},
    {"second step fails", [](Library& l) { l.answer(Library::Next, Library::Error, 2); }, "ASRL1 ASRL3 g1 g2 g3 g4 g5 g6", "ASRL3=3 ASRL1=1"},
    {"every step fails", [](Library& l) { l.answer(Library::Next, Library::Error); }, "ASRL3", "ASRL3=3"},
    {"first step warns", [](Library& l) { l.answer(Library::Next, Library::Warning, 1); }, "ASRL2 ASRL3 g1 g2 g3 g4 g5 g6", "ASRL3=3"},
    {"every step warns", [](Library& l) { l.answer(Library::Next, Library::Warning); }, "ASRL3", "ASRL3=3"},
    {"first parse fails", [](Library& l) { l.answer(Library::Parse, Library::Error, 1); }, s_all, "ASRL3=0 ASRL1=1 ASRL2=2"},
    {"every parse fails", [](Library& l) { l.answer(Library::Parse, Library::Error); }, s_all, "ASRL3=0 ASRL1=0 ASRL2=0"},
    {"every parse warns", [](Library& l) { l.answer(Library::Parse, Library::Warning); }, s_all, s_threePorts},
    {"nothing closes", [](Library& l) { l.answer(Library::Close, Library::Error); }, s_all, s_threePorts},
    {"first close fails", [](Library& l) { l.answer(Library::Close, Library::Error, 1); }, s_all, s_threePorts},
    {"an empty text", [](Library& l) { l.addResource("\"\"", QString()); }, " ASRL1 ASRL2 ASRL3 g1 g2 g3 g4 g5 g6", s_threePorts},
    {"a port twice", [](Library& l) { l.addResource("ASRL1", QStringLiteral("ASRL1"), 1); }, "ASRL1 ASRL1 ASRL2 ASRL3 g1 g2 g3 g4 g5 g6", "ASRL3=3 ASRL1=1 ASRL2=2 ASRL1=1"},
    {"a text not UTF-8", [](Library& l) { l.addResource("ASRL\\xFC", QStringLiteral("ASRL\ufffd"), 7); }, "ASRL1 ASRL2 ASRL3 ASRL\xEF\xBF\xBD g1 g2 g3 g4 g5 g6", "ASRL3=3 ASRL1=1 ASRL2=2 ASRL\xEF\xBF\xBD=7"},
    // With what fills the buffer it is no name that the library could parse.
    {"a text without end", [](Library& l) { l.addResource("ASRL8 no-end", unended(), 0); }, nullptr, nullptr},
};
// clang-format on

/// A scan on a thread of its own, let go at the latest when the object dies.
class Scan
{
public:
    explicit Scan(support::BenchFixture& bench)
        : m_go(bench.pathFor("go").string()),
          m_thread([] { gui::ResourceDialog::updateResourceList(); })
    {}
    ~Scan() { end(); }
    Scan(const Scan&) = delete;
    Scan& operator=(const Scan&) = delete;

    void end()
    {
        support::writeFile(m_go, "");
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }

private:
    std::string m_go;
    std::thread m_thread;
};

QString joined(const QStringList& texts)
{
    return texts.join(QLatin1Char(' '));
}

} // namespace

class TestLibraryFaults : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void eachAlone_data();
    void eachAlone();
    void eachTwo_data();
    void eachTwo();

private:
    void setUp() override;
    void useDialogs(const Library& library);
    void useFindDialog(const QStringList& expected);
    void usePropertyDialog(guitest::PropertyDialogCase& test, const QStringList& expected);
};

void TestLibraryFaults::setUp()
{
    // An entry that no case reports.
    const support::BenchFixture bench("resource left::over\n");
    gui::ResourceDialog::updateResourceList();
}

void TestLibraryFaults::useDialogs(const Library& library)
{
    guitest::PropertyDialogCase properties(library.bench());
    {
        Scan scan(properties.bench());
        if (const auto calls = library.callsBeforeHold()) {
            QTRY_COMPARE_WITH_TIMEOUT(properties.bench().calls().size(), *calls, 60000);
            // The scan has emptied the list, and does not come back: the other dialog does.
            QCOMPARE(guitest::ResourceDialogCase().list().count(), 0);
            usePropertyDialog(properties, library.ports());
        }
        scan.end();
    }
    useFindDialog(library.scanned());
    usePropertyDialog(properties, library.ports());
}

void TestLibraryFaults::useFindDialog(const QStringList& expected)
{
    guitest::ResourceDialogCase find;
    QCOMPARE(find.listed(), joined(expected));
    QCOMPARE(find.list().count(), expected.size());
    // Not shown, no more than the other dialog: each window that goes writes its settings to the
    // disk, which would take most of the test's time.
    find.refresh().click();
    QCOMPARE(find.listed(), joined(expected));
    QCOMPARE(find.list().count(), expected.size());
    QVERIFY(find.box().isEnabled() && find.refresh().isEnabled());
    if (!expected.isEmpty()) {
        find.list().setCurrentRow(0);
    }
    find.box().button(QDialogButtonBox::Ok)->click();
    QCOMPARE(find.dialog().result(), int(QDialog::Accepted));
    QCOMPARE(find.dialog().getResource(), expected.value(0));
}

void TestLibraryFaults::usePropertyDialog(guitest::PropertyDialogCase& test,
                                          const QStringList& expected)
{
    test.havePorts({});
    test.construct();
    const QComboBox& combo = test.combo("comboBoxSerialInterface");
    QStringList ports;
    for (int index = 0; index < combo.count(); ++index) {
        ports.append(
            QStringLiteral("%1=%2").arg(combo.itemText(index)).arg(combo.itemData(index).toUInt()));
    }
    QCOMPARE(joined(ports), joined(expected));
    QCOMPARE(combo.currentIndex(), expected.isEmpty() ? -1 : 0);
    QCOMPARE(test.widget<QWidget>("tabAsrlProperties").isEnabled(), !expected.isEmpty());
    test.widget<QDialogButtonBox>("buttonBox").button(QDialogButtonBox::Ok)->click();
    QCOMPARE(test.dialog().result(), int(QDialog::Accepted));
    // The first port was shown and so has an entry.
    QCOMPARE(guitest::text(test.model().getSerialProperties()),
             expected.isEmpty() ? QString()
                                : expected.first().section(QLatin1Char('='), -1) +
                                      QStringLiteral("=9600,8,0,0,0"));
    QCOMPARE(test.model().isDirty(), !expected.isEmpty());
    test.destroy();
}

void TestLibraryFaults::eachAlone_data()
{
    QTest::addColumn<int>("fault");
    int index = 0;
    for (const Fault& fault : s_faults) {
        QTest::newRow(fault.name) << index++;
    }
}

void TestLibraryFaults::eachAlone()
{
    QFETCH(const int, fault);
    const Fault& chosen = s_faults[fault];
    Library library;
    chosen.addTo(library);
    // What is foretold of two together must be right of each alone.
    if (chosen.scanned != nullptr) {
        QCOMPARE(joined(library.scanned()), QString::fromUtf8(chosen.scanned));
        QCOMPARE(joined(library.ports()), QString::fromUtf8(chosen.ports));
    } else {
        QCOMPARE(library.scanned().at(3), unended());
        QCOMPARE(library.ports().at(3), unended() + QStringLiteral("=0"));
    }
    useDialogs(library);
}

void TestLibraryFaults::eachTwo_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    for (int first = 0; first < int(std::size(s_faults)); ++first) {
        for (int second = first + 1; second < int(std::size(s_faults)); ++second) {
            QTest::addRow("%s, %s", s_faults[first].name, s_faults[second].name) << first << second;
        }
    }
}

void TestLibraryFaults::eachTwo()
{
    QFETCH(const int, first);
    QFETCH(const int, second);
    Library library;
    s_faults[first].addTo(library);
    s_faults[second].addTo(library);
    useDialogs(library);
}

static const guitest::Registration<TestLibraryFaults> s_registration;
#include "TestLibraryFaults.moc"
