// SPDX-License-Identifier: MIT
#include "gui/PropertyDialog.h"

#include "ui_PropertyDialog.h"

#include "gui/SelectAllOnFocus.h"
#include "gui/WindowSettings.h"
#include "model/ConfigurationModel.h"

namespace gui {

namespace {

WindowSettings propertyDialogSettings()
{
    return WindowSettings(QStringLiteral("PropertyDialog"));
}

void removeTab(QTabWidget& tabs, QWidget* page)
{
    const int index = tabs.indexOf(page);
    if (index >= 0) {
        tabs.removeTab(index);
    }
}

} // namespace

PropertyDialog::PropertyDialog(ConfigurationModel& model, QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui_PropertyDialog>()),
      m_model(model),
      m_gpibProperties(model.getGpibProperties()),
      m_serialProperties(model.getSerialProperties())
{
    m_ui->setupUi(this);
    setupSerialInterface();
    setupUi();
    m_ui->providerEdit->setText(QString::number(m_model.getProvider()));
    new SelectAllOnFocus(*m_ui->providerEdit);
    setupConnections();
}

PropertyDialog::~PropertyDialog()
{
    saveWindowSettings();
}

void PropertyDialog::setupUi()
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    // restoreWindowSettings() shows a dialog that was maximised, and exec() does not make a window
    // modal that is already visible.
    setModal(true);
    restoreWindowSettings();
    redrawtree();
    // The stored index counts the two tabs that remain but is applied to all four. Deliberate:
    // which tab opens again is part of the behaviour.
    removeTab(*m_ui->tabWidget, m_ui->tabConfMang);
    removeTab(*m_ui->tabWidget, m_ui->tabGpibProperties);
}

void PropertyDialog::setupConnections()
{
    // Normalised signatures have no blanks.
    // clang-format off
    connect(m_ui->PropertyTree, SIGNAL(itemChanged(QTreeWidgetItem*,int)), this,
            SLOT(itemChanged(QTreeWidgetItem*,int)));
    // clang-format on
    connect(m_ui->actionAdd_Device, SIGNAL(triggered()), this, SLOT(addDevice()));
    connect(m_ui->actionRemove_Device, SIGNAL(triggered()), this, SLOT(removeDevice()));
    connect(m_ui->PropertyTree, SIGNAL(customContextMenuRequested(QPoint)), this,
            SLOT(treePopupMenu(QPoint)));
    m_ui->PropertyTree->setContextMenuPolicy(Qt::CustomContextMenu);
    m_ui->groupBoxOs->close();
}

unsigned short PropertyDialog::getProvider() const
{
    bool isNumber = false;
    const int provider = m_ui->providerEdit->text().toInt(&isNumber, 10);
    if (!isNumber) {
        return QvVisa::defaultProvider;
    }
    // The field accepts up to 99999; larger values than 65535 deliberately wrap.
    return static_cast<unsigned short>(provider);
}

void PropertyDialog::accept()
{
    serialInterfaceChanged(-1);
    m_model.setProvider(getProvider());
    m_model.setGpibProperties(m_gpibProperties);
    m_model.setSerialProperties(m_serialProperties);
    QDialog::accept();
}

void PropertyDialog::setVisaComboboxIndex(int)
{}

void PropertyDialog::VisaCheckBoxStateChanged(bool)
{}

void PropertyDialog::restoreWindowSettings()
{
    propertyDialogSettings().restore(*this, m_ui->tabWidget);
}

void PropertyDialog::saveWindowSettings() const
{
    propertyDialogSettings().save(*this, m_ui->tabWidget);
}

} // namespace gui
