// SPDX-License-Identifier: MIT
// The properties dialog's tab for the serial ports.
#include "gui/PropertyDialog.h"

#include "ui_PropertyDialog.h"

#include "gui/VisaSearch.h"

#include <QTextDocument>

#include <array>
#include <cstdint>

namespace gui {

namespace {

constexpr std::array<std::uint32_t, 16> s_baudrates{300,    600,    1200,   1800,  2400,  4800,
                                                    7200,   9600,   14400,  19200, 38400, 57600,
                                                    115200, 230400, 460800, 921600};
constexpr std::array<std::uint32_t, 4> s_dataBits{5, 6, 7, 8};

template <std::size_t Count>
void fill(QComboBox& combo, const std::array<std::uint32_t, Count>& values)
{
    combo.clear();
    for (const std::uint32_t value : values) {
        combo.addItem(QString::number(value), value);
    }
}

/// Selects a value; inserts it at the top if the list does not have it.
void select(QComboBox& combo, std::uint32_t value)
{
    int index = combo.findData(value);
    if (index < 0) {
        index = 0;
        combo.insertItem(index, QString::number(value), value);
    }
    combo.setCurrentIndex(index);
}

/// Codes equal list indexes except for the last one.
constexpr int s_lastFlowControlIndex = 3;
constexpr std::uint8_t s_lastFlowControlCode = 6;

std::uint8_t flowControlCode(int index)
{
    if (index <= 0) {
        return 0;
    }
    return index < s_lastFlowControlIndex ? static_cast<std::uint8_t>(index)
                                          : s_lastFlowControlCode;
}

/// A tool tip in one line; a name from the library is never taken as rich text.
QString wholeName(const QString& resource)
{
    return resource.isEmpty() ? QString()
                              : Qt::convertFromPlainText(resource, Qt::WhiteSpaceNoWrap);
}

} // namespace

void PropertyDialog::setupSerialInterface()
{
    addBaudrates(*m_ui->comboBoxOsBaudrate);
    addBaudrates(*m_ui->comboBoxQvBaudrate);
    addDataBits(*m_ui->comboBoxOsDatabits);
    addDataBits(*m_ui->comboBoxQvDatabits);
    m_ui->comboBoxSerialInterface->clear();
    // The first one added becomes current and shows its settings.
    for (const SerialPort& port : findSerialPorts()) {
        m_ui->comboBoxSerialInterface->addItem(port.resource, uint{port.interfaceNumber});
        m_ui->comboBoxSerialInterface->setItemData(m_ui->comboBoxSerialInterface->count() - 1,
                                                   wholeName(port.resource), Qt::ToolTipRole);
    }
    if (m_ui->comboBoxSerialInterface->count() == 0) {
        m_ui->tabAsrlProperties->setEnabled(false);
    }
}

void PropertyDialog::addBaudrates(QComboBox& combo)
{
    fill(combo, s_baudrates);
}

void PropertyDialog::addDataBits(QComboBox& combo)
{
    fill(combo, s_dataBits);
}

void PropertyDialog::UpdateVisaSerialSettings(QvVisa::SSerialProperties const& properties)
{
    select(*m_ui->comboBoxQvBaudrate, properties.baudrate);
    select(*m_ui->comboBoxQvDatabits, properties.dataBits);
    // A code outside the list leaves nothing selected.
    m_ui->comboBoxQvStopbits->setCurrentIndex(properties.stopBits);
    m_ui->comboBoxQvParity->setCurrentIndex(properties.parity);
    const int flowControl = properties.flowControl;
    m_ui->comboBoxQvFlowControl->setCurrentIndex(
        flowControl < s_lastFlowControlIndex ? flowControl : s_lastFlowControlIndex);
}

void PropertyDialog::GetDisplayVisaSerialSettings(QvVisa::SSerialProperties& properties) const
{
    // toInt() gives 0 for a rate that does not fit a signed 32-bit number.
    properties.baudrate =
        static_cast<std::uint32_t>(m_ui->comboBoxQvBaudrate->currentText().toInt(nullptr, 10));
    properties.dataBits =
        static_cast<std::uint8_t>(m_ui->comboBoxQvDatabits->currentText().toInt(nullptr, 10));
    // Nothing selected (-1) becomes 255.
    properties.stopBits = static_cast<std::uint8_t>(m_ui->comboBoxQvStopbits->currentIndex());
    properties.parity = static_cast<std::uint8_t>(m_ui->comboBoxQvParity->currentIndex());
    properties.flowControl = flowControlCode(m_ui->comboBoxQvFlowControl->currentIndex());
}

unsigned short PropertyDialog::serialInterfaceNumber(int index) const
{
    return static_cast<unsigned short>(m_ui->comboBoxSerialInterface->itemData(index).toUInt());
}

void PropertyDialog::serialInterfaceChanged(int iIndex)
{
    if (m_currentSerialIndex >= 0) {
        GetDisplayVisaSerialSettings(
            m_serialProperties[serialInterfaceNumber(m_currentSerialIndex)]);
    }
    if (iIndex >= 0) {
        // Deliberate: a port without an entry gets one, even if its settings stay at the defaults.
        UpdateVisaSerialSettings(m_serialProperties[serialInterfaceNumber(iIndex)]);
    }
    m_currentSerialIndex = iIndex;
    // The closed list is narrower than long names, which may differ in their last characters.
    m_ui->comboBoxSerialInterface->setToolTip(
        wholeName(m_ui->comboBoxSerialInterface->currentText()));
}

void PropertyDialog::setDefaultOs()
{}

void PropertyDialog::setDefaultQv()
{
    UpdateVisaSerialSettings(QvVisa::SSerialProperties());
}

} // namespace gui
