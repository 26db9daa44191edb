// SPDX-License-Identifier: MIT
// The texts that a translator of the windows finds, and their contexts.
#include "gui/MainWindow.h"
#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "gui/RsrcStringEditor.h"
#include "tests/gui/common/WindowTest.h"
#include "tests/support/Children.h"
#include "tests/support/ModalWindows.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
#include <QSet>
#include <QTableView>
#include <QTabWidget>
#include <QTranslator>
#include <QTreeWidget>

namespace {

/// Puts a mark before every text but Qt's own, and records the contexts.
class MarkingTranslator : public QTranslator
{
public:
    MarkingTranslator() { QCoreApplication::installTranslator(this); }

    // Without it Qt would not ask.
    bool isEmpty() const override { return false; }

    QString translate(const char* context, const char* source, const char*, int) const override
    {
        if (context[0] == 'Q' && QChar::fromLatin1(context[1]).isUpper()) {
            return {};
        }
        m_contexts.insert(QString::fromLatin1(context));
        return QLatin1Char('~') + QString::fromUtf8(source);
    }

    QStringList contexts() const
    {
        QStringList all = m_contexts.values();
        all.sort();
        return all;
    }

private:
    mutable QSet<QString> m_contexts;
};

} // namespace

class TestTranslation : public guitest::WindowTest
{
    Q_OBJECT

private slots:
    void textsAreTranslatedInTheContextsOfTheForms()
    {
        configuration().write("A=ASRL1::INSTR\n");
        const MarkingTranslator translator;
        {
            gui::MainWindow window(nullptr);
            window.show();
            auto& table = support::child<QTableView>(window, "resourceView");
            emit table.customContextMenuRequested(
                table.visualRect(table.model()->index(0, 0)).center());
            QVERIFY(QApplication::activePopupWidget() != nullptr);
            QApplication::activePopupWidget()->close();
            table.model()->removeRow(0);
            const support::ModalAnswer<QMessageBox> answer([](QMessageBox& box) { box.reject(); });
            window.close();
            QVERIFY(answer.wasShown());
        }
        gui::ResourceDialog find(nullptr);
        find.refreshList();
        gui::RsrcStringEditor composer(nullptr);
        ConfigurationModel model(nullptr);
        gui::PropertyDialog properties(model, nullptr);
        properties.addDevice();
        QCOMPARE(
            translator.contexts(),
            QStringList({QStringLiteral("MainWindow"), QStringLiteral("PropertyDialog"),
                         QStringLiteral("ResourceDialog"), QStringLiteral("RsrcStringEditor")}));

        const auto& tabs = support::child<QTabWidget>(properties, "tabWidget");
        const auto& tree = support::child<QTreeWidget>(properties, "PropertyTree");
        QStringList texts{properties.windowTitle(),
                          tabs.tabText(0),
                          tabs.tabText(1),
                          support::child<QComboBox>(properties, "comboBoxQvStopbits").itemText(1),
                          tree.headerItem()->text(0),
                          tree.topLevelItem(0)->text(0)};
        for (const QLabel* label : properties.findChildren<QLabel*>()) {
            texts.append(label->text());
        }
        for (const QGroupBox* box : properties.findChildren<QGroupBox*>()) {
            texts.append(box->title());
        }
        for (const QString& text : texts) {
            QVERIFY2(text.startsWith(QLatin1Char('~')), qPrintable(text));
        }
    }
};

static const guitest::Registration<TestTranslation> s_registerTranslation;
#include "TestTranslation.moc"
