// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QStringList>

#include <atomic>
#include <memory>
#include <mutex>

class QListWidgetItem;
class Ui_ResourceDialog;

namespace gui {

/// The modal "Find resources" dialog, and the process-wide cache of resource strings that it
/// shows. Everything but updateResourceList() belongs to the GUI thread.
class ResourceDialog : public QDialog
{
    Q_OBJECT

public:
    /// Lists what the cache holds; starts no scan.
    explicit ResourceDialog(QWidget* parent);
    ~ResourceDialog() override;

    /// Asks the VISA library for every resource and replaces the cache by the answer, sorted by
    /// code units, duplicates kept; empty when the library fails, finds nothing or is not there.
    /// Blocks for as long as the library takes. Any thread; a second scan waits for the first.
    static void updateResourceList();

    /// The selected resource string, empty without a selection.
    QString getResource() const;

public slots:
    /// Rescans and lists the result. Blocks.
    void refreshList();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private slots:
    void itemDoubleClicked(QListWidgetItem* item);

private:
    /// Lists the cache anew, after a scan if so wished, else after any scan that runs.
    void refreshList(bool rescan);
    void setupUi();
    void setupConnections();
    void restoreWindowSettings();
    void saveWindowSettings() const;

    std::unique_ptr<Ui_ResourceDialog> m_ui;

    static QStringList s_resources;
    /// Guards every change of s_resources and is held for the whole of a scan.
    static std::mutex s_resourceListMutex;
    /// Guards the moments in which s_resources is exchanged or copied: the constructor must not
    /// wait for a scan and so takes this one alone.
    static std::mutex s_resourceCopyMutex;
    static std::atomic<bool> s_resourceListUpdateInProcess;
};

} // namespace gui
