// SPDX-License-Identifier: MIT
#pragma once

#include "gui/DeviceItem.h"
#include "gui/PropertyDialog.h"
#include "model/ConfigurationModel.h"
#include "tests/gui/common/Dialogs.h"
#include "tests/gui/common/RecordTexts.h"
#include "tests/gui/common/WindowTest.h"
#include "tests/support/Children.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QSettings>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>

#include <memory>
#include <string>
#include <string_view>

namespace guitest {

/// Base of the properties dialog's tests: a model without unsaved changes, and a dialog on it.
class PropertyDialogTest : public WindowTest
{
protected:
    using WindowTest::WindowTest;
    static constexpr const char* s_onePort = "resource ASRL1::INSTR\n";
    static constexpr const char* s_twoPorts = "resource ASRL1::INSTR\nresource ASRL3::INSTR\n";

    void setUp() override { m_model = std::make_unique<ConfigurationModel>(nullptr); }
    void tearDown() override
    {
        destroy();
        m_model.reset();
    }

    void setPorts(const QvVisa::SerialPropertiesMap& ports)
    {
        m_model->setSerialProperties(ports);
        m_model->setDirty(false);
    }
    void setBoards(const QvVisa::GpibPropertiesMap& boards)
    {
        m_model->setGpibProperties(boards);
        m_model->setDirty(false);
    }
    void setProvider(unsigned short provider)
    {
        m_model->setProvider(provider);
        m_model->setDirty(false);
    }

    /// A new dialog on a bench with these lines, not shown, in place of the one before.
    gui::PropertyDialog& construct(std::string_view benchLines = "")
    {
        destroy();
        bench().write(benchLines);
        m_dialog = std::make_unique<gui::PropertyDialog>(*m_model, nullptr);
        return *m_dialog;
    }
    /// The same, shown.
    gui::PropertyDialog& open(std::string_view benchLines = "")
    {
        construct(benchLines).show();
        QApplication::setActiveWindow(m_dialog.get());
        return *m_dialog;
    }
    void destroy() { m_dialog.reset(); }

    gui::PropertyDialog& dialog() { return *m_dialog; }
    ConfigurationModel& model() { return *m_model; }
    QString ports() { return text(model().getSerialProperties()); }
    QString boards() { return text(model().getGpibProperties()); }

    template <typename Widget>
    Widget& widget(const char* name)
    {
        return support::child<Widget>(*m_dialog, name);
    }
    QComboBox& combo(const char* name) { return widget<QComboBox>(name); }
    /// "TEXT=DATA TEXT=DATA" of the list of serial ports.
    QString listedPorts()
    {
        QStringList texts;
        const QComboBox& list = combo("comboBoxSerialInterface");
        for (int index = 0; index < list.count(); ++index) {
            texts.append(QStringLiteral("%1=%2")
                             .arg(list.itemText(index))
                             .arg(list.itemData(index).toUInt()));
        }
        return texts.join(QLatin1Char(' '));
    }

    void clickOk() { clickButton(*m_dialog, QDialogButtonBox::Ok); }
    void clickCancel() { clickButton(*m_dialog, QDialogButtonBox::Cancel); }

    /// Replaces the text of the provider's field by keys.
    void typeProvider(const QString& typed)
    {
        auto& field = widget<QLineEdit>("providerEdit");
        field.setFocus();
        field.selectAll();
        QTest::keyClick(&field, Qt::Key_Delete);
        QTest::keyClick(&field, Qt::Key_Home);
        QTest::keyClicks(&field, typed);
    }

    /// Adds a page that the dialog has removed to the tabs, and opens it.
    void showPage(const char* page)
    {
        auto& tabs = widget<QTabWidget>("tabWidget");
        tabs.setCurrentIndex(tabs.addTab(&widget<QWidget>(page), QString::fromLatin1(page)));
    }

    /// Opens the dialog on these boards, with the page of the boards shown and all rows expanded.
    void openBoards(const QvVisa::GpibPropertiesMap& boards)
    {
        setBoards(boards);
        open();
        showPage("tabGpibProperties");
        tree().expandAll();
    }
    QTreeWidget& tree() { return widget<QTreeWidget>("PropertyTree"); }
    QTreeWidgetItem* board(int row) { return tree().topLevelItem(row); }
    QTreeWidgetItem* fields(int row) { return board(row)->child(0); }
    QPoint centreOf(const QTreeWidgetItem* item) { return tree().visualItemRect(item).center(); }
    /// The boards of the working copy: those that OK stores in the model.
    QString boardsAfterOk()
    {
        dialog().accept();
        return boards();
    }

private:
    std::unique_ptr<ConfigurationModel> m_model;
    std::unique_ptr<gui::PropertyDialog> m_dialog;
};

} // namespace guitest
