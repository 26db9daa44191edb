// SPDX-License-Identifier: MIT
#include "gui/RsrcStringEditor.h"

#include "ui_RsrcStringEditor.h"

#include "gui/ResourceDialog.h"
#include "gui/ResourceString.h"
#include "gui/WindowSettings.h"

#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QStyle>

namespace gui {

namespace {

/// Deliberately beyond the list: the group for GPIB boards is never shown.
constexpr int s_gpibIndex = 6;

/// What a line edit leaves free on both sides of its text, and its cursor, in pixels.
constexpr int s_textMargins = 6;

WindowSettings rsrcStringEditorSettings()
{
    return WindowSettings(QStringLiteral("RsrcStringEditor"), WindowSettings::Maximised::NotKept);
}

void setTextIfEmpty(QLineEdit& edit, const QString& text)
{
    if (edit.text().isEmpty()) {
        edit.setText(text);
    }
}

} // namespace

RsrcStringEditor::RsrcStringEditor(QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui_RsrcStringEditor>())
{
    m_ui->setupUi(this);
    // Before the list has items: inserting the first one shows its fields.
    setupConnections();
    setupUi();
    restoreWindowSettings();
}

RsrcStringEditor::~RsrcStringEditor()
{
    saveWindowSettings();
}

void RsrcStringEditor::setupUi()
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    // With a large font the field would otherwise show only the end of most resource strings.
    const int frame = 2 * style()->pixelMetric(QStyle::PM_DefaultFrameWidth) + s_textMargins;
    m_ui->RsrcEdit->setMinimumWidth(
        m_ui->RsrcEdit->fontMetrics().horizontalAdvance(longUsualResourceString()) + frame);

    // In the order of InterfaceType.
    m_ui->IfcComboBox->addItems({QStringLiteral("VXI-11"), QStringLiteral("HiSlip"),
                                 QStringLiteral("Socket"), QStringLiteral("QVIB"),
                                 QStringLiteral("USB"), QStringLiteral("Serial")});
    m_ui->IfcComboBox->setCurrentIndex(0);

    const QString digits = QStringLiteral("[0-9]*");
    const QString usbId = QStringLiteral("(0x[0-9a-fA-F]{0,4})|([0-9]{0,5})");
    setValidator(*m_ui->aliasEdit, QStringLiteral(R"([^:,\s]*)"));
    setValidator(*m_ui->serialEdit, QStringLiteral(R"([^"\*\/:\?\\]*)"));
    setValidator(*m_ui->IpEdit,
                 QStringLiteral(R"(^(([a-zA-Z0-9]|[a-zA-Z0-9][a-zA-Z0-9\-]*[a-zA-Z0-9])\.)*)"
                                R"(([A-Za-z0-9]|[A-Za-z0-9][A-Za-z0-9\-]*[A-Za-z0-9])$)"));
    setValidator(*m_ui->BoardEdit, QStringLiteral("[0-9]{0,2}"));
    setValidator(*m_ui->PortEdit, digits);
    setValidator(*m_ui->deviceEdit, digits);
    setValidator(*m_ui->vendorEdit, usbId);
    setValidator(*m_ui->productEdit, usbId);
    setValidator(*m_ui->PrimaryEdit, digits);

    m_ui->vendorEdit->setText(QStringLiteral("0x0000"));
    m_ui->productEdit->setText(QStringLiteral("0x0000"));
}

void RsrcStringEditor::setValidator(QLineEdit& edit, const QString& pattern)
{
    // With Unicode properties, \s also matches a no-break space.
    const QRegularExpression expression(pattern, QRegularExpression::UseUnicodePropertiesOption);
    edit.setValidator(new QRegularExpressionValidator(expression, this));
}

void RsrcStringEditor::setupConnections()
{
    connect(m_ui->IfcComboBox, SIGNAL(currentIndexChanged(int)), this,
            SLOT(currentIndexChanged(int)));
    connect(m_ui->BoardEdit, SIGNAL(textChanged(QString)), this, SLOT(updateRsrcString(QString)));
    connect(m_ui->IpEdit, SIGNAL(textChanged(QString)), this, SLOT(updateRsrcString(QString)));
    connect(m_ui->PortEdit, SIGNAL(textChanged(QString)), this, SLOT(updateRsrcString(QString)));
    connect(m_ui->deviceEdit, SIGNAL(textChanged(QString)), this, SLOT(updateRsrcString(QString)));
    connect(m_ui->vendorEdit, SIGNAL(textChanged(QString)), this, SLOT(updateRsrcString(QString)));
    connect(m_ui->serialEdit, SIGNAL(textChanged(QString)), this, SLOT(updateRsrcString(QString)));
    connect(m_ui->productEdit, SIGNAL(textChanged(QString)), this, SLOT(updateRsrcString(QString)));
    connect(m_ui->PrimaryEdit, SIGNAL(textChanged(QString)), this, SLOT(updateRsrcString(QString)));
    connect(m_ui->FindRsrcButton, SIGNAL(clicked()), this, SLOT(findResource()));
}

void RsrcStringEditor::setRsrcString(const QString& resource)
{
    m_ui->RsrcEdit->setText(resource);
}

QString RsrcStringEditor::getRsrcString() const
{
    return m_ui->RsrcEdit->text().trimmed();
}

void RsrcStringEditor::setAlias(const QString& alias)
{
    m_ui->aliasEdit->setText(alias);
}

QString RsrcStringEditor::getAlias() const
{
    return m_ui->aliasEdit->text().trimmed();
}

void RsrcStringEditor::currentIndexChanged(int index)
{
    const auto type = static_cast<InterfaceType>(index);
    const auto showPort = [this](bool visible) {
        m_ui->PortEdit->setVisible(visible);
        m_ui->portLabel->setVisible(visible);
    };
    m_ui->TcpipGroupBox->setVisible(type < InterfaceType::Usb);
    m_ui->UsbGroupBox->setVisible(type == InterfaceType::Usb);
    m_ui->GpibGroupBox->setVisible(index == s_gpibIndex);
    showPort(type != InterfaceType::Vxi11);
    m_ui->deviceEdit->setVisible(type < InterfaceType::Socket);
    m_ui->deviceLabel->setVisible(type < InterfaceType::Socket);
    setTextIfEmpty(*m_ui->deviceEdit, QStringLiteral("0"));
    m_ui->BoardEdit->setEnabled(true);
    setTextIfEmpty(*m_ui->BoardEdit, QStringLiteral("0"));
    switch (type) {
    case InterfaceType::Vxi11:
        break;
    case InterfaceType::HiSlip:
        m_ui->PortEdit->setText(hiSlipPort());
        break;
    case InterfaceType::Socket:
        m_ui->PortEdit->setText(socketPort());
        break;
    case InterfaceType::Qvib:
        m_ui->BoardEdit->setEnabled(false);
        showPort(false);
        break;
    case InterfaceType::Usb:
    case InterfaceType::Serial:
        showPort(false);
        break;
    }
    updateRsrcString(QString());
}

void RsrcStringEditor::updateRsrcString(const QString&)
{
    const ResourceParts parts{m_ui->BoardEdit->text(),  m_ui->IpEdit->text(),
                              m_ui->deviceEdit->text(), m_ui->PortEdit->text(),
                              m_ui->vendorEdit->text(), m_ui->productEdit->text(),
                              m_ui->serialEdit->text()};
    const auto type = static_cast<InterfaceType>(m_ui->IfcComboBox->currentIndex());
    m_ui->RsrcEdit->setText(composeResourceString(type, parts));
}

void RsrcStringEditor::findResource()
{
    ResourceDialog dialog(this);
    if (dialog.exec() != QDialog::Rejected) {
        m_ui->RsrcEdit->setText(dialog.getResource());
    }
}

void RsrcStringEditor::restoreWindowSettings()
{
    rsrcStringEditorSettings().restore(*this);
}

void RsrcStringEditor::saveWindowSettings() const
{
    rsrcStringEditorSettings().save(*this);
}

} // namespace gui
