// SPDX-License-Identifier: MIT
#include "gui/MainWindow.h"

#include "ui_MainWindow.h"

#include "gui/CellDelegate.h"
#include "gui/DisabledIcon.h"
#include "gui/ResourceDialog.h"
#include "gui/ResourceString.h"
#include "gui/TableStyle.h"
#include "gui/WindowSettings.h"
#include "Version.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QMessageBox>
#include <QToolButton>

#include <algorithm>
#include <system_error>

namespace gui {

namespace {

WindowSettings mainWindowSettings()
{
    return WindowSettings(QStringLiteral("MainWindow"));
}

/// The width of a cell that shows a long, but usual, resource string.
int usualResourceWidth(const QTableView& table)
{
    return table.fontMetrics().horizontalAdvance(longUsualResourceString()) +
           2 * TableStyle::textMargin(table) + 1;
}

/// The nearest point within the rectangle.
QPoint nearestPoint(const QRect& rect, const QPoint& point)
{
    return {std::clamp(point.x(), rect.left(), rect.right()),
            std::clamp(point.y(), rect.top(), rect.bottom())};
}

} // namespace

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent),
      m_ui(std::make_unique<Ui_MainWindow>()),
      m_model(this)
{
    startScan();
    m_ui->setupUi(this);
    setupUi();
    setupConnections();
    restoreWindowSettings();
}

MainWindow::~MainWindow()
{
    if (m_scanThread.joinable()) {
        m_scanThread.join();
    }
    saveWindowSettings();
}

void MainWindow::startScan()
{
    try {
        m_scanThread = std::thread([] { ResourceDialog::updateResourceList(); });
    } catch (const std::system_error&) {
        // No thread could be started: the cache stays empty until the user presses Refresh.
    }
}

void MainWindow::setupUi()
{
    setWindowTitle(QLatin1String("QvVisaConfigure - ") + QLatin1String(qvvisa::versionText));
    setupTable();
    m_model.m_selectionModel = m_ui->resourceView->selectionModel();
    refreshButtonStatus();
    m_ui->actionSave->setEnabled(m_model.isDirty());
    for (QAction* action : m_ui->toolBar->actions()) {
        action->setIcon(withDisabledPixmaps(action->icon()));
    }
    // The actions have no shortcuts, so the Tab key must reach their buttons.
    for (QToolButton* button : m_ui->toolBar->findChildren<QToolButton*>()) {
        button->setFocusPolicy(Qt::TabFocus);
    }
    // Made before the connection to the model's save(), so that this runs first.
    connect(m_ui->actionSave, &QAction::triggered, this, &MainWindow::finishCellEdit);
}

void MainWindow::setupTable()
{
    QTableView& table = *m_ui->resourceView;
    TableStyle::apply(table);
    table.setModel(&m_model);
    table.setItemDelegate(new CellDelegate(&table));
    // The model has no titles for rows.
    table.verticalHeader()->hide();
    QHeaderView& header = *table.horizontalHeader();
    header.setStretchLastSection(true);
    header.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header.setHighlightSections(false);
    table.resizeColumnsToContents();
    header.resizeSection(ConfigurationModel::ResourceColumn,
                         std::max(header.sectionSize(ConfigurationModel::ResourceColumn),
                                  usualResourceWidth(table)));
}

void MainWindow::setupConnections()
{
    connect(m_ui->actionClose, SIGNAL(triggered()), this, SLOT(close()));
    connect(m_ui->actionAdd_Resource, SIGNAL(triggered()), this, SLOT(rsrcStringEditor()));
    connect(m_ui->actionRemove_resource, SIGNAL(triggered()), &m_model,
            SLOT(removeSelectedEntry()));
    connect(m_ui->actionEdit, SIGNAL(triggered()), this, SLOT(rsrcStringEditorEdit()));
    connect(m_ui->actionSave, SIGNAL(triggered()), &m_model, SLOT(save()));
    connect(m_ui->actionFind, SIGNAL(triggered()), this, SLOT(findResource()));
    connect(m_ui->actionEdit_properties, SIGNAL(triggered()), this, SLOT(setProperties()));
    // Normalised signatures have no blanks.
    // clang-format off
    connect(m_ui->resourceView->selectionModel(),
            SIGNAL(selectionChanged(QItemSelection,QItemSelection)), this,
            SLOT(selectionChanged(QItemSelection,QItemSelection)));
    // clang-format on
    m_ui->resourceView->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_ui->resourceView, SIGNAL(customContextMenuRequested(QPoint)), this,
            SLOT(tablePopupMenu(QPoint)));
    connect(&m_model, SIGNAL(dirtyHasChanged(bool)), this, SLOT(modelDirtyFlagChanged(bool)));
}

void MainWindow::refreshButtonStatus()
{
    const bool hasSelection = m_ui->resourceView->selectionModel()->hasSelection();
    m_ui->actionFind->setEnabled(hasSelection);
    m_ui->actionEdit->setEnabled(hasSelection);
}

void MainWindow::selectionChanged(const QItemSelection&, const QItemSelection&)
{
    refreshButtonStatus();
}

void MainWindow::modelDirtyFlagChanged(bool bDirty)
{
    // Disabling a button with the focus would pass the focus on to "Close".
    const QWidget* saveButton = m_ui->toolBar->widgetForAction(m_ui->actionSave);
    if (!bDirty && saveButton != nullptr && saveButton->hasFocus()) {
        m_ui->resourceView->setFocus();
    }
    m_ui->actionSave->setEnabled(bDirty);
}

void MainWindow::tablePopupMenu(QPoint pos)
{
    QTableView& table = *m_ui->resourceView;
    const QRect visible = table.viewport()->rect();
    if (!visible.contains(pos)) {
        // From the keyboard, for a row that is scrolled out of view.
        table.scrollTo(table.currentIndex());
        pos = nearestPoint(visible, table.visualRect(table.currentIndex()).center());
    }
    const QModelIndex index = table.indexAt(pos);
    m_popupMenu = std::make_unique<QMenu>(this);
    m_popupMenu->addAction(m_ui->actionAdd_Resource);
    if (index.row() >= 0) {
        m_popupMenu->addAction(m_ui->actionRemove_resource);
        m_popupMenu->addAction(m_ui->actionEdit);
        m_popupMenu->addSeparator();
        m_popupMenu->addAction(m_ui->actionFind);
    }
    m_popupMenu->popup(table.viewport()->mapToGlobal(pos));
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    finishCellEdit();
    QWidget::closeEvent(event);
    if (!m_model.isDirty()) {
        return;
    }
    switch (QMessageBox::question(
        this, QStringLiteral("Unsaved data"), QStringLiteral("Do you want to save before exiting?"),
        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::NoButton)) {
    case QMessageBox::Cancel:
        event->ignore();
        break;
    case QMessageBox::Yes:
        m_model.save();
        break;
    default:
        break;
    }
}

/// Commits the text of an open cell editor, as if the user had pressed Return.
void MainWindow::finishCellEdit()
{
    if (m_ui->resourceView->viewport()->isAncestorOf(focusWidget())) {
        m_ui->resourceView->setFocus();
    }
}

void MainWindow::restoreWindowSettings()
{
    mainWindowSettings().restore(*this);
}

void MainWindow::saveWindowSettings() const
{
    mainWindowSettings().save(*this);
}

} // namespace gui
