// SPDX-License-Identifier: MIT
// The provider, and what OK and Cancel do with the working copies.
#include "tests/gui/property_dialog/PropertyDialogTest.h"

#include <QPushButton>
#include <QSignalSpy>

namespace {

/// Port 7 is not on the bench.
const QvVisa::SerialPropertiesMap s_ports{{1, {300, 7, 2, 1, 6}}, {7, {1200, 5, 1, 2, 1}}};
const QvVisa::GpibPropertiesMap s_boards{{0, {}}, {3, {7, 8, 0}}};

} // namespace

class TestFrame : public guitest::PropertyDialogTest
{
    Q_OBJECT

private slots:
    void fieldShowsTheProvider()
    {
        for (const unsigned short provider : {ushort{0}, ushort{42}, ushort{65535}}) {
            setProvider(provider);
            open();
            QCOMPARE(widget<QLineEdit>("providerEdit").text(), QString::number(provider));
            clickOk();
            QCOMPARE(model().getProvider(), provider);
            QVERIFY(!model().isDirty());
        }
    }

    void okStoresTheTypedProvider_data()
    {
        columns<QString, int>("typed", "provider");
        QTest::newRow("nothing") << "" << 3674;
        QTest::newRow("blank") << " " << 3674;
        QTest::newRow("many zeros") << "00000" << 0;
        QTest::newRow("leading zeros") << "00042" << 42;
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
        widget<QPushButton>("btnDefaultQv").click();
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

    void okAfterInertSlotsAloneChangesNothing()
    {
        openOnRecords();
        bench().clearCalls();
        const QSignalSpy dirty(&model(), SIGNAL(dirtyHasChanged(bool)));
        dialog().setVisaComboboxIndex(1);
        dialog().VisaCheckBoxStateChanged(true);
        dialog().setDefaultOs();
        QVERIFY(disconnect(&widget<QPushButton>("btnDefaultOs"), SIGNAL(clicked()), &dialog(),
                           SLOT(setDefaultOs())));
        QVERIFY(dialog().isVisible());
        clickOk();
        QVERIFY(bench().calls().empty());
        QCOMPARE(dirty.count(), 0);
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
