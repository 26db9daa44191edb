// SPDX-License-Identifier: MIT
// The parts of the composer, the fields of each interface, and its size and position.
#include "tests/gui/common/CutOff.h"
#include "tests/gui/common/FontSize.h"
#include "tests/gui/common/FormText.h"
#include "tests/gui/common/Settings.h"
#include "tests/gui/rsrc_string_editor/ComposerTest.h"

#include <QGroupBox>
#include <QLayout>

class TestForm : public guitest::ComposerTest
{
    Q_OBJECT

private slots:
    void formIsAsInTheFile()
    {
        const QString difference = guitest::differenceFrom(
            QStringLiteral("rsrc_string_editor/form.txt"), guitest::formText(editor()));
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }

    void fieldsOfTheInterfaceAreShown_data()
    {
        columns<int, QString>("type", "shown");
        const QString tcpip = QStringLiteral("BoardEdit TcpipGroupBox label_5 IpEdit");
        const QString device = QStringLiteral(" deviceLabel deviceEdit");
        const QString port = QStringLiteral(" portLabel PortEdit");
        QTest::newRow("VXI-11") << int{Vxi11} << tcpip + device;
        QTest::newRow("HiSlip") << int{HiSlip} << tcpip + device + port;
        QTest::newRow("Socket") << int{Socket} << tcpip + port;
        QTest::newRow("QVIB") << int{Qvib} << tcpip;
        QTest::newRow("USB") << int{Usb}
                             << QStringLiteral("BoardEdit UsbGroupBox label_6 vendorEdit label_8 "
                                               "productEdit label_7 serialEdit");
        QTest::newRow("Serial") << int{Serial} << QStringLiteral("BoardEdit");
    }

    void fieldsOfTheInterfaceAreShown()
    {
        QFETCH(const int, type);
        for (int former = Vxi11; former <= Serial; ++former) {
            choose(former);
            choose(type);
            QTEST(shownFields(), "shown");
            QCOMPARE(edit("BoardEdit").isEnabled(), type != Qvib);
        }
    }

    void tabKeyVisitsTheShownFieldsInOrder_data() { addInterfaces(); }
    void tabKeyVisitsTheShownFieldsInOrder()
    {
        QFETCH(const int, type);
        QTRY_COMPARE(QApplication::focusWidget(), &edit("aliasEdit"));
        choose(type);
        QStringList expected{QStringLiteral("aliasEdit"), QStringLiteral("RsrcEdit"),
                             QStringLiteral("FindRsrcButton"), QStringLiteral("IfcComboBox")};
        for (const QString& name : shownFields().split(QLatin1Char(' '))) {
            if (name.endsWith(QLatin1String("Edit")) &&
                edit(name.toLatin1().constData()).isEnabled()) {
                expected.append(name);
            }
        }
        edit("aliasEdit").setFocus();
        for (const QString& name : expected) {
            QCOMPARE(QApplication::focusWidget()->objectName(), name);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        const auto& box = widget<QDialogButtonBox>("buttonBox");
        for (const auto button : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel}) {
            QCOMPARE(QApplication::focusWidget(), box.button(button));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(QApplication::focusWidget(), &edit("aliasEdit"));
    }

    void noTextIsCutOff_data()
    {
        QTest::addColumn<int>("pixels");
        QTest::newRow("usual font size") << int{guitest::FontSize::usual};
        QTest::newRow("large font size") << int{guitest::FontSize::large};
    }

    void noTextIsCutOff()
    {
        QFETCH(const int, pixels);
        const guitest::FontSize fontSize(pixels);
        for (int type = Vxi11; type <= Serial; ++type) {
            open();
            choose(type);
            QCOMPARE(guitest::cutOffParts(editor(), 13), QStringList());
            QCOMPARE(editor().height(), 595);
            if (pixels == guitest::FontSize::usual) {
                QCOMPARE(editor().width(), 740);
            }
        }
    }

    void longResourceStringIsShownWhole()
    {
        const guitest::FontSize fontSize(guitest::FontSize::usual);
        open();
        setResource("TCPIP0::scope3.laboratory.lan::hislip0,4881::INSTR");
        QCoreApplication::processEvents();
        QVERIFY(edit("RsrcEdit").fontMetrics().horizontalAdvance(resource()) <
                edit("RsrcEdit").width());
    }

    void usualResourceStringIsShownWholeInALargeFont()
    {
        const guitest::FontSize fontSize(guitest::FontSize::large);
        open();
        setResource("TCPIP0::192.168.100.100::inst0::INSTR");
        QCoreApplication::processEvents();
        QVERIFY(edit("RsrcEdit").fontMetrics().horizontalAdvance(resource()) <
                edit("RsrcEdit").width() - 4);
    }

    void hiddenFieldsLeaveNoGaps_data() { addInterfaces(); }
    void hiddenFieldsLeaveNoGaps()
    {
        QFETCH(const int, type);
        choose(type);
        QCoreApplication::processEvents();
        for (const char* name : {"groupBox", "groupBox_2", "TcpipGroupBox", "UsbGroupBox"}) {
            const auto& group = widget<QGroupBox>(name);
            const QLayout& layout = *group.layout();
            int bottom =
                group.contentsRect().top() + layout.contentsMargins().top() - layout.spacing() - 1;
            for (int index = 0; group.isVisible() && index < layout.count(); ++index) {
                QLayoutItem& item = *layout.itemAt(index);
                if (item.widget() != nullptr ? item.widget()->isVisible() : !item.isEmpty()) {
                    QCOMPARE(item.geometry().top() - bottom - 1, layout.spacing());
                    bottom = item.geometry().bottom();
                }
            }
        }
    }

    void restoresSizeAndPosition()
    {
        editor().resize(801, 612);
        editor().move(33, 44);
        QCOMPARE(QSettings().allKeys(), QStringList());
        tearDown();
        QCOMPARE(settingsFile(), QStringLiteral("[RsrcStringEditor]\n"
                                                "pos=@Point(33 44)\n"
                                                "size=@Size(801 612)\n"));
        const gui::RsrcStringEditor next(nullptr);
        QCOMPARE(next.size(), QSize(801, 612));
        QCOMPARE(next.pos(), QPoint(33, 44));
    }

    void maximisedStateIsNotRestored()
    {
        guitest::store(QStringLiteral("RsrcStringEditor"), "fullscreen", true);
        open();
        QVERIFY(!editor().isMaximized());
        editor().showMaximized();
        QVERIFY(editor().isMaximized());
        const QSize maximised = editor().size();
        open();
        QVERIFY(!editor().isMaximized());
        QCOMPARE(editor().size(), maximised);
    }

private:
    QString shownFields() const
    {
        QStringList shown;
        for (const char* name :
             {"BoardEdit", "TcpipGroupBox", "label_5", "IpEdit", "deviceLabel", "deviceEdit",
              "portLabel", "PortEdit", "UsbGroupBox", "label_6", "vendorEdit", "label_8",
              "productEdit", "label_7", "serialEdit", "GpibGroupBox", "label_9", "PrimaryEdit"}) {
            if (widget<QWidget>(name).isVisible()) {
                shown.append(QString::fromLatin1(name));
            }
        }
        return shown.join(QLatin1Char(' '));
    }
};

static const guitest::Registration<TestForm> s_registerForm;
#include "TestForm.moc"
