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
    /// Lists the contents of the cache; starts no scan.
    explicit ResourceDialog(QWidget* parent);
    ~ResourceDialog() override;

    /// Searches the VISA library for every resource and replaces the cache with the result, sorted
    /// by code units, duplicates kept; empty when the library fails, finds nothing or is missing.
    /// Blocks for as long as the library takes. Any thread; a second scan waits for the first.
    static void updateResourceList();

    /// The selected resource string, empty without a selection.
    QString getResource() const;

public slots:
    /// Scans again and lists the result. Blocks.
    void refreshList();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private slots:
    void itemDoubleClicked(QListWidgetItem* item);

private:
    static void replaceCache(const QStringList& resources);
    QStringList copyCache();
    /// Fills the list from the cache again, after a scan if rescan is set, otherwise after any scan
    /// that is running.
    void refreshList(bool rescan);
    void setupUi();
    void setupConnections();
    void restoreWindowSettings();
    void saveWindowSettings() const;

    std::unique_ptr<Ui_ResourceDialog> m_ui;
    /// The listed copy of the cache was made while a scan was running.
    bool m_isCopyPreliminary = false;

    static QStringList s_resources;
    /// Held for the whole of a scan. A thread that holds it may read s_resources.
    static std::mutex s_resourceListMutex;
    /// Held in addition for each change of s_resources. The constructor holds it alone, to copy the
    /// cache without waiting for a scan.
    static std::mutex s_resourceCopyMutex;
    static std::atomic<bool> s_resourceListUpdateInProcess;
};

} // namespace gui
