// SPDX-License-Identifier: MIT
#pragma once

#include "gui/PropertyDialog.h"
#include "model/ConfigurationModel.h"
#include "tests/support/BenchFixture.h"
#include "tests/support/Children.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>
#include <QTest>

#include <memory>
#include <string_view>

namespace guitest {

/// What one case of the properties dialog's tests stands on: a bench, no stored settings, a clean
/// model and, from open() on, a dialog on it.
class PropertyDialogCase
{
public:
    explicit PropertyDialogCase(std::string_view bench = "") : m_bench(bench), m_model(nullptr)
    {
        QSettings().clear();
    }

    /// Settings that the model holds before the dialog opens; it is clean afterwards.
    void havePorts(const QvVisa::SerialPropertiesMap& ports)
    {
        m_model.setSerialProperties(ports);
        m_model.setDirty(false);
    }
    void haveBoards(const QvVisa::GpibPropertiesMap& boards)
    {
        m_model.setGpibProperties(boards);
        m_model.setDirty(false);
    }
    void haveProvider(unsigned short provider)
    {
        m_model.setProvider(provider);
        m_model.setDirty(false);
    }

    /// Makes a dialog and shows it, after destroying the one before.
    gui::PropertyDialog& open()
    {
        construct().show();
        QApplication::setActiveWindow(m_dialog.get());
        return *m_dialog;
    }

    /// Makes a dialog without showing it, after destroying the one before.
    gui::PropertyDialog& construct()
    {
        destroy();
        m_dialog = std::make_unique<gui::PropertyDialog>(m_model, nullptr);
        return *m_dialog;
    }

    void destroy() { m_dialog.reset(); }

    void click(QDialogButtonBox::StandardButton button)
    {
        QTest::mouseClick(widget<QDialogButtonBox>("buttonBox").button(button), Qt::LeftButton);
    }
    void clickOk() { click(QDialogButtonBox::Ok); }
    void clickCancel() { click(QDialogButtonBox::Cancel); }

    /// Puts a tab that the dialog has removed back, behind the others, and opens it.
    void showTab(const char* page)
    {
        auto& tabs = widget<QTabWidget>("tabWidget");
        tabs.setCurrentIndex(tabs.addTab(&widget<QWidget>(page), QString::fromLatin1(page)));
    }

    support::BenchFixture& bench() { return m_bench; }
    ConfigurationModel& model() { return m_model; }
    gui::PropertyDialog& dialog() { return *m_dialog; }

    template <typename Widget>
    Widget& widget(const char* name)
    {
        return support::child<Widget>(*m_dialog, name);
    }
    QComboBox& combo(const char* name) { return widget<QComboBox>(name); }

private:
    support::BenchFixture m_bench;
    ConfigurationModel m_model;
    std::unique_ptr<gui::PropertyDialog> m_dialog;
};

} // namespace guitest
