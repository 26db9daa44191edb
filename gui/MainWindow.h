// SPDX-License-Identifier: MIT
#pragma once

#include "model/ConfigurationModel.h"

#include <QItemSelection>
#include <QMainWindow>
#include <QMenu>

#include <memory>
#include <thread>

class Ui_MainWindow;

namespace gui {

/// The main window: the table of resources and aliases, its tool bar and context menu. The
/// constructor loads the configuration and starts one scan for resources on a thread of its own;
/// the destructor waits for that scan. GUI thread only.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent);
    ~MainWindow() override;

protected:
    /// Asks about unsaved changes; Cancel keeps the window open.
    void closeEvent(QCloseEvent* event) override;

private slots:
    void findResource();
    void setProperties();
    void refreshButtonStatus();
    void rsrcStringEditor();
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected);
    void tablePopupMenu(QPoint pos);
    void rsrcStringEditorEdit();
    void modelDirtyFlagChanged(bool bDirty);

private:
    void setupUi();
    void setupTable();
    void setupConnections();
    void startScan();
    void finishCellEdit();
    void paintTable();
    void restoreWindowSettings();
    void saveWindowSettings() const;

    std::unique_ptr<Ui_MainWindow> m_ui;
    ConfigurationModel m_model;
    /// The last context menu: it is shown without blocking, so it must outlive the slot.
    std::unique_ptr<QMenu> m_popupMenu;
    std::thread m_scanThread;
};

} // namespace gui
