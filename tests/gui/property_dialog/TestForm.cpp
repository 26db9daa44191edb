// SPDX-License-Identifier: MIT
// The parts of the properties dialog, and the order in which the Tab key visits them.
#include "tests/gui/common/FormText.h"
#include "tests/gui/property_dialog/PropertyDialogTest.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QTableWidget>
#include <QTranslator>

namespace {

/// Puts a mark before every text of the dialog's context, and records the texts.
class MarkingTranslator : public QTranslator
{
public:
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        if (qstrcmp(context, "PropertyDialog") != 0) {
            return QString();
        }
        m_sources.append(QString::fromUtf8(source));
        return QLatin1Char('~') + m_sources.last();
    }
    bool isEmpty() const override { return false; }
    const QStringList& sources() const { return m_sources; }

private:
    mutable QStringList m_sources;
};

} // namespace

class TestForm : public guitest::PropertyDialogTest
{
    Q_OBJECT

private slots:
    void formIsAsInTheFile()
    {
        setBoards({{0, {}}});
        const QString difference = guitest::differenceFrom(
            QStringLiteral("property_dialog/form.txt"), guitest::formText(open(s_twoPorts)));
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }

    void conflictManagerDoesNothing()
    {
        open();
        showPage("tabConfMang");
        QComboBox& selector = combo("comboBoxVisaSelector");
        selector.addItems({QStringLiteral("one"), QStringLiteral("two")});
        QTest::keyClick(&selector, Qt::Key_Down);
        QCOMPARE(selector.currentIndex(), 1);
        for (const char* name : {"checkBoxVisaEnabled", "checkBoxPreferred"}) {
            auto& box = widget<QCheckBox>(name);
            QTest::keyClick(&box, Qt::Key_Space);
            QVERIFY(box.isChecked());
        }
        QCOMPARE(widget<QTableWidget>("rsrcTable").rowCount(), 0);
        clickOk();
        QVERIFY(!model().isDirty());
    }

    void tabKeyVisitsAPageFromTopToBottom_data()
    {
        columns<QByteArray, QString>("page", "order");
        const auto row = [](const char* page, const char* order) {
            QTest::newRow(page) << QByteArray(page) << QString::fromLatin1(order);
        };
        row("tabConfMang",
            "rsrcTable comboBoxVisaSelector checkBoxVisaEnabled checkBoxPreferred OK");
        row("tabAsrlProperties",
            "comboBoxSerialInterface comboBoxQvBaudrate comboBoxQvDatabits comboBoxQvStopbits "
            "comboBoxQvParity comboBoxQvFlowControl btnDefaultQv OK");
        row("tabGpibProperties", "addButton removeButton PropertyTree OK");
        row("tabSpecialProperties", "providerEdit OK");
    }

    void tabKeyVisitsAPageFromTopToBottom()
    {
        QFETCH(const QByteArray, page);
        QFETCH(const QString, order);
        open(s_twoPorts);
        auto& tabs = widget<QTabWidget>("tabWidget");
        if (page == "tabConfMang" || page == "tabGpibProperties") {
            showPage(page.constData());
        }
        tabs.setCurrentWidget(&widget<QWidget>(page.constData()));
        tabs.setFocus();
        const QWidget* ok = widget<QDialogButtonBox>("buttonBox").button(QDialogButtonBox::Ok);
        QStringList visited;
        while (QApplication::focusWidget() != ok && visited.size() < 20) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            visited.append(QApplication::focusWidget() == ok
                               ? QStringLiteral("OK")
                               : QApplication::focusWidget()->objectName());
        }
        QCOMPARE(visited.join(QLatin1Char(' ')), order);
    }

    void everyTextIsTranslated()
    {
        MarkingTranslator translator;
        QVERIFY(QCoreApplication::installTranslator(&translator));
        setBoards({{0, {}}});
        const gui::PropertyDialog& dialog = construct(s_twoPorts);
        const QChar mark = QLatin1Char('~');
        QVERIFY(dialog.windowTitle().startsWith(mark));
        for (const QLabel* label : dialog.findChildren<QLabel*>()) {
            QVERIFY2(label->text().startsWith(mark), qPrintable(label->text()));
        }
        for (const QGroupBox* box : dialog.findChildren<QGroupBox*>()) {
            QVERIFY2(box->title().startsWith(mark), qPrintable(box->title()));
        }
        QCOMPARE(combo("comboBoxQvStopbits").itemText(1), QStringLiteral("~1,5"));
        for (const char* title :
             {"Conflict Manager", "ASRL Properties", "Gpib Properties", "Special Properties"}) {
            QVERIFY2(translator.sources().contains(QString::fromLatin1(title)), title);
        }
        QCOMPARE(tree().headerItem()->text(0), QStringLiteral("~Device No"));
        QCOMPARE(board(0)->text(0), QStringLiteral("~Device 0"));
    }
};

static const guitest::Registration<TestForm> s_registerForm;
#include "TestForm.moc"
