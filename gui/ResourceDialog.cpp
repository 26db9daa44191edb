// SPDX-License-Identifier: MIT
#include "gui/ResourceDialog.h"

#include "ui_ResourceDialog.h"

#include "gui/VisaSearch.h"
#include "gui/WindowSettings.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPushButton>

namespace gui {

namespace {

WindowSettings resourceDialogSettings()
{
    return WindowSettings(QStringLiteral("ResourceDialog"));
}

} // namespace

QStringList ResourceDialog::s_resources;
std::mutex ResourceDialog::s_resourceListMutex;
std::mutex ResourceDialog::s_resourceCopyMutex;
std::atomic<bool> ResourceDialog::s_resourceListUpdateInProcess{false};

void ResourceDialog::updateResourceList()
{
    const std::lock_guard<std::mutex> lock(s_resourceListMutex);
    s_resourceListUpdateInProcess.exchange(true);
    replaceCache(QStringList());
    replaceCache(findAllResources());
    s_resourceListUpdateInProcess.exchange(false);
}

void ResourceDialog::replaceCache(const QStringList& resources)
{
    const std::lock_guard<std::mutex> lock(s_resourceCopyMutex);
    s_resources = resources;
}

QStringList ResourceDialog::copyCache()
{
    const std::lock_guard<std::mutex> lock(s_resourceCopyMutex);
    m_isCopyPreliminary = s_resourceListUpdateInProcess;
    return s_resources;
}

ResourceDialog::ResourceDialog(QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui_ResourceDialog>())
{
    m_ui->setupUi(this);
    setupUi();
    setupConnections();
}

ResourceDialog::~ResourceDialog() = default;

void ResourceDialog::setupUi()
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    // Not under s_resourceListMutex: a dialog is constructed without waiting for a running scan.
    m_ui->rsrcList->addItems(copyCache());
    m_ui->buttonBox->button(QDialogButtonBox::Ok)
        ->setText(QCoreApplication::translate("ResourceDialog", "Select"));
}

void ResourceDialog::setupConnections()
{
    connect(m_ui->refreshButton, SIGNAL(clicked()), this, SLOT(refreshList()));
    connect(m_ui->rsrcList, SIGNAL(itemDoubleClicked(QListWidgetItem*)), this,
            SLOT(itemDoubleClicked(QListWidgetItem*)));
}

QString ResourceDialog::getResource() const
{
    const QList<QListWidgetItem*> selected = m_ui->rsrcList->selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text();
}

void ResourceDialog::refreshList()
{
    refreshList(true);
}

void ResourceDialog::refreshList(bool rescan)
{
    m_ui->buttonBox->setEnabled(false);
    m_ui->refreshButton->setEnabled(false);
    setCursor(Qt::WaitCursor);
    m_ui->rsrcList->clear();
    m_isCopyPreliminary = false;
    // The dialog does not respond from here on: paint the wait state first.
    repaint();
    if (rescan) {
        updateResourceList();
    }
    {
        const std::lock_guard<std::mutex> lock(s_resourceListMutex);
        m_ui->rsrcList->addItems(s_resources);
    }
    setCursor(Qt::ArrowCursor);
    m_ui->buttonBox->setEnabled(true);
    m_ui->refreshButton->setEnabled(true);
}

void ResourceDialog::itemDoubleClicked(QListWidgetItem*)
{
    if (!m_ui->rsrcList->selectedItems().isEmpty()) {
        accept();
    }
}

void ResourceDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    // A scan that was running when the cache was copied may have ended since.
    if (s_resourceListUpdateInProcess || m_isCopyPreliminary) {
        // The dialog is not on the screen before this event has ended, so the pointer is over
        // another window of the program, which does not respond either.
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        refreshList(false);
        QGuiApplication::restoreOverrideCursor();
    }
    restoreWindowSettings();
}

void ResourceDialog::hideEvent(QHideEvent* event)
{
    QDialog::hideEvent(event);
    saveWindowSettings();
}

void ResourceDialog::restoreWindowSettings()
{
    resourceDialogSettings().restore(*this);
}

void ResourceDialog::saveWindowSettings() const
{
    resourceDialogSettings().save(*this);
}

} // namespace gui
