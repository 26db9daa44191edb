// SPDX-License-Identifier: MIT
// The provider, and what OK and Cancel do with the working copies.
#include "tests/gui/property_dialog/PropertyDialogTest.h"

#include <QSignalSpy>

namespace {

/// Port 7 is not on the bench.
const QvVisa::SerialPropertiesMap s_ports{{1, {300, 7, 2, 1, 6}}, {7, {1200, 5, 1, 2, 1}}};
const QvVisa::GpibPropertiesMap s_boards{{0, {}}, {3, {7, 8, 0}}};

/// The number of connections of a signal, which only a subclass of QObject can ask for.
int connections(const QObject& sender, const QByteArray& signal)
{
    struct Sender : QObject
    {
        using QObject::receivers;
    };
    return (sender.*&Sender::receivers)(signal.constData());
}

} // namespace

class TestFrame : public guitest::PropertyDialogTest
{
    Q_OBJECT

private slots:
    void fieldShowsTheProvider_data()
    {
        QTest::addColumn<int>("provider");
        for (const int provider : {0, 1, 42, 3674, 65535}) {
            QTest::addRow("%d", provider) << provider;
        }
    }

    void fieldShowsTheProvider()
    {
        QFETCH(const int, provider);
        setProvider(static_cast<unsigned short>(provider));
        open();
        QCOMPARE(widget<QLineEdit>("providerEdit").text(), QString::number(provider));
        QCOMPARE(int(dialog().getProvider()), provider);
        clickOk();
        QCOMPARE(int(model().getProvider()), provider);
        QVERIFY(!model().isDirty());
    }

    void okStoresTheTypedProvider_data()
    {
        columns<QString, int>("typed", "provider");
        QTest::newRow("nothing") << "" << 3674;
        QTest::newRow("blank") << " " << 3674;
        QTest::newRow("zero") << "0" << 0;
        QTest::newRow("many zeros") << "00000" << 0;
        QTest::newRow("leading zeros") << "00042" << 42;
        QTest::newRow("not octal") << "010" << 10;
        QTest::newRow("greatest of 15 bits") << "32767" << 32767;
        QTest::newRow("least of 16 bits") << "32768" << 32768;
        QTest::newRow("greatest of 16 bits") << "65535" << 65535;
        QTest::newRow("one more") << "65536" << 0;
        QTest::newRow("greatest of five digits") << "99999" << 34463;
        QTest::newRow("sixth digit") << "123456" << 12345;
        QTest::newRow("other characters") << "-1x2,3" << 123;
    }

    void okStoresTheTypedProvider()
    {
        QFETCH(const QString, typed);
        QFETCH(const int, provider);
        setProvider(7);
        open();
        typeProvider(typed);
        QCOMPARE(int(dialog().getProvider()), provider);
        QCOMPARE(int(model().getProvider()), 7);
        clickOk();
        QCOMPARE(int(model().getProvider()), provider);
        QVERIFY(model().isDirty());
    }

    void okStoresAllThreeInOrder_data()
    {
        columns<bool, QString>("editsProvider", "atFirstChange");
        QTest::newRow("provider first") << true << "4086 2 300";
        QTest::newRow("then boards, then ports") << false << "3674 3 300";
    }

    void okStoresAllThreeInOrder()
    {
        QFETCH(const bool, editsProvider);
        QFETCH(const QString, atFirstChange);
        openOnRecords();
        // Emitted at the first change alone: what the model holds by then.
        QStringList states;
        connect(&model(), &ConfigurationModel::dirtyHasChanged, &dialog(), [this, &states] {
            states.append(QStringLiteral("%1 %2 %3")
                              .arg(model().getProvider())
                              .arg(model().getGpibProperties().size())
                              .arg(model().getSerialProperties().at(1).baudrate));
        });
        if (editsProvider) {
            typeProvider(QStringLiteral("4086"));
        }
        combo("comboBoxQvBaudrate").setCurrentIndex(1);
        dialog().addDevice();
        clickOk();
        QCOMPARE(states, QStringList(atFirstChange));
        QCOMPARE(dialog().result(), int(QDialog::Accepted));
        QVERIFY(!dialog().isVisible());
        QCOMPARE(int(model().getProvider()), editsProvider ? 4086 : 3674);
        QCOMPARE(ports(), QStringLiteral("1=600,7,2,1,6 7=1200,5,1,2,1"));
        QCOMPARE(boards(), QStringLiteral("0=0,65535,1 3=7,8,0 4=0,65535,1"));
    }

    void okWithoutAnEditChangesNothing()
    {
        openOnRecords();
        const QSignalSpy dirty(&model(), SIGNAL(dirtyHasChanged(bool)));
        clickOk();
        QCOMPARE(dirty.count(), 0);
        QVERIFY(isModelUnchanged());
    }

    void okAddsAnEntryForTheFirstPort()
    {
        setPorts(s_ports);
        open("resource ASRL2::INSTR\nresource ASRL1::INSTR\n");
        clickOk();
        QCOMPARE(ports(), QStringLiteral("1=300,7,2,1,6 2=9600,8,0,0,0 7=1200,5,1,2,1"));
        QVERIFY(model().isDirty());
    }

    void enterIsOk()
    {
        open();
        typeProvider(QStringLiteral("5"));
        QTest::keyClick(&widget<QLineEdit>("providerEdit"), Qt::Key_Return);
        QCOMPARE(dialog().result(), int(QDialog::Accepted));
        QCOMPARE(int(model().getProvider()), 5);
    }

    void leavingKeepsTheModel_data()
    {
        QTest::addColumn<QByteArray>("way");
        for (const char* way : {"Cancel", "Escape", "closing", "destruction"}) {
            QTest::newRow(way) << QByteArray(way);
        }
    }

    void leavingKeepsTheModel()
    {
        QFETCH(const QByteArray, way);
        openOnRecords();
        typeProvider(QStringLiteral("4086"));
        combo("comboBoxQvParity").setCurrentIndex(3);
        dialog().addDevice();
        if (way == "Cancel") {
            clickCancel();
        } else if (way == "Escape") {
            QTest::keyClick(&dialog(), Qt::Key_Escape);
        } else if (way == "closing") {
            dialog().close();
        }
        if (way != "destruction") {
            QVERIFY(!dialog().isVisible());
            QCOMPARE(dialog().result(), int(QDialog::Rejected));
        }
        destroy();
        QVERIFY(isModelUnchanged());
    }

    void editsAreMadeOnCopies()
    {
        openOnRecords();
        setPorts({{9, {}}});
        setBoards({});
        setProvider(1);
        clickOk();
        model().setDirty(false);
        QVERIFY(isModelUnchanged());
    }

    void eachConnectionIsMadeOnce_data()
    {
        columns<QByteArray, QByteArray, QByteArray, QByteArray>("sender", "signal", "receiver",
                                                                "slot");
        const auto row = [](const char* sender, const char* signal, const char* receiver,
                            const char* slot) {
            QTest::addRow("%s to %s", sender, slot + 1) << QByteArray(sender) << QByteArray(signal)
                                                        << QByteArray(receiver) << QByteArray(slot);
        };

        row("buttonBox", SIGNAL(accepted()), "", SLOT(accept()));
        row("buttonBox", SIGNAL(rejected()), "", SLOT(reject()));
        row("addButton", SIGNAL(clicked()), "actionAdd_Device", SLOT(trigger()));
        row("removeButton", SIGNAL(clicked()), "actionRemove_Device", SLOT(trigger()));
        row("comboBoxSerialInterface", SIGNAL(currentIndexChanged(int)), "",
            SLOT(serialInterfaceChanged(int)));
        row("btnDefaultOs", SIGNAL(clicked()), "", SLOT(setDefaultOs()));
        row("btnDefaultQv", SIGNAL(clicked()), "", SLOT(setDefaultQv()));
        // clang-format off
        row("PropertyTree", SIGNAL(itemChanged(QTreeWidgetItem*,int)), "",
            SLOT(itemChanged(QTreeWidgetItem*,int)));
        // clang-format on
        row("actionAdd_Device", SIGNAL(triggered()), "", SLOT(addDevice()));
        row("actionRemove_Device", SIGNAL(triggered()), "", SLOT(removeDevice()));
        row("PropertyTree", SIGNAL(customContextMenuRequested(QPoint)), "",
            SLOT(treePopupMenu(QPoint)));
    }

    void eachConnectionIsMadeOnce()
    {
        QFETCH(const QByteArray, sender);
        QFETCH(const QByteArray, signal);
        QFETCH(const QByteArray, receiver);
        QFETCH(const QByteArray, slot);
        construct();
        const QObject& from = widget<QObject>(sender.constData());
        const QObject& to = receiver.isEmpty() ? dialog() : widget<QObject>(receiver.constData());
        const int before = connections(from, signal);
        QVERIFY(QObject::disconnect(&from, signal.constData(), &to, slot.constData()));
        QCOMPARE(connections(from, signal), before - 1);
    }

    void inertSlotsDoNothing()
    {
        openOnRecords();
        bench().clearCalls();
        for (const int index : {-1, 0, 1}) {
            dialog().setVisaComboboxIndex(index);
        }
        dialog().VisaCheckBoxStateChanged(true);
        dialog().VisaCheckBoxStateChanged(false);
        dialog().setDefaultOs();
        QVERIFY(bench().calls().empty());
        QVERIFY(dialog().isVisible());
        clickOk();
        QVERIFY(isModelUnchanged());
    }

private:
    void openOnRecords()
    {
        setPorts(s_ports);
        setBoards(s_boards);
        open(s_onePort);
    }
    bool isModelUnchanged()
    {
        return int(model().getProvider()) == 3674 && model().getSerialProperties() == s_ports &&
               model().getGpibProperties() == s_boards && !model().isDirty();
    }
};

static const guitest::Registration<TestFrame> s_registerFrame;
#include "TestFrame.moc"
