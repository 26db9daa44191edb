// SPDX-License-Identifier: MIT
#pragma once

#include "gui/DeviceItem.h"
#include "gui/PropertyDialog.h"
#include "model/ConfigurationModel.h"
#include "tests/gui/common/Dialogs.h"
#include "tests/gui/common/WindowTest.h"
#include "tests/support/Children.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

#include <memory>
#include <string>
#include <string_view>

namespace guitest {

/// The records in ascending order:
/// "1=9600,8,0,0,0 3=300,7,2,1,6" for ports (baud rate, data bits, stop bits, parity, flow
/// control), "0=5,65535,1" for boards (primary, secondary address, system controller).
inline QString text(const QvVisa::SerialPropertiesMap& ports)
{
    QStringList texts;
    for (const auto& [number, port] : ports) {
        texts.append(QStringLiteral("%1=%2,%3,%4,%5,%6")
                         .arg(number)
                         .arg(port.baudrate)
                         .arg(port.dataBits)
                         .arg(port.stopBits)
                         .arg(port.parity)
                         .arg(port.flowControl));
    }
    return texts.join(QLatin1Char(' '));
}

inline QString text(const QvVisa::GpibPropertiesMap& boards)
{
    QStringList texts;
    for (const auto& [number, board] : boards) {
        texts.append(QStringLiteral("%1=%2,%3,%4")
                         .arg(number)
                         .arg(board.primaryAddress)
                         .arg(board.secondaryAddress)
                         .arg(board.systemController));
    }
    return texts.join(QLatin1Char(' '));
}

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

private:
    std::unique_ptr<ConfigurationModel> m_model;
    std::unique_ptr<gui::PropertyDialog> m_dialog;
};

} // namespace guitest
