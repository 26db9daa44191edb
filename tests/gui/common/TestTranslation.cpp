// SPDX-License-Identifier: MIT
// The contexts that a translator of the windows finds.
#include "gui/MainWindow.h"
#include "gui/PropertyDialog.h"
#include "gui/ResourceDialog.h"
#include "gui/RsrcStringEditor.h"
#include "tests/gui/common/WindowTest.h"
#include "tests/support/Children.h"
#include "tests/support/ModalWindows.h"

#include <QApplication>
#include <QComboBox>
#include <QMessageBox>
#include <QSet>
#include <QTableView>
#include <QTranslator>

namespace {

/// Translates nothing and notes for which contexts it was asked, apart from Qt's own.
class LoggingTranslator : public QTranslator
{
public:
    LoggingTranslator() { QCoreApplication::installTranslator(this); }

    // Without it Qt would not ask.
    bool isEmpty() const override { return false; }

    QString translate(const char* context, const char*, const char*, int) const override
    {
        const QString name = QString::fromLatin1(context);
        if (!(name.size() > 1 && name[0] == QLatin1Char('Q') && name[1].isUpper())) {
            m_contexts.insert(name);
        }
        return {};
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
    void onlyFormsAreContexts()
    {
        const LoggingTranslator translator;
        configuration().write("A=ASRL1::INSTR\n");
        bench().write("resource ASRL1::INSTR\n");
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
        find.show();
        find.refreshList();
        gui::RsrcStringEditor composer(nullptr);
        auto& interfaces = support::child<QComboBox>(composer, "IfcComboBox");
        for (int type = 0; type < interfaces.count(); ++type) {
            interfaces.setCurrentIndex(type);
        }
        ConfigurationModel model(nullptr);
        gui::PropertyDialog properties(model, nullptr);
        properties.addDevice();
        QCOMPARE(
            translator.contexts(),
            QStringList({QStringLiteral("MainWindow"), QStringLiteral("PropertyDialog"),
                         QStringLiteral("ResourceDialog"), QStringLiteral("RsrcStringEditor")}));
    }
};

static const guitest::Registration<TestTranslation> s_registerTranslation;
#include "TestTranslation.moc"
