// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationRecords.h"

#include <QAbstractTableModel>
#include <QString>

#include <cstddef>
#include <utility>
#include <vector>

class QItemSelectionModel;

/// The user's editable copy of the configuration: a table of resource strings and aliases, the
/// serial and GPIB settings, the provider ID, and whether any of it differs from what was loaded
/// or last saved. Loads itself from the store when it is constructed. GPIB settings are neither
/// loaded nor saved.
///
/// The store's bytes are Latin-1: other characters become "?" in a save. GUI thread only.
class ConfigurationModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        ResourceColumn,
        AliasColumn,
        ColumnCount
    };

    explicit ConfigurationModel(QObject* parent);

    /// Fills the table, the serial settings and the provider from the store: the resources without
    /// an alias in their order, then the aliases in their table's iteration order, as
    /// ConfigurationFile::getResource() numbers them. Clean afterwards. Emits no row signals: for a
    /// model that no view shows yet.
    void loaddata();

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// Stores the cleaned text in one cell: trimmed, blanks turned into "_", "=", "#" and ";"
    /// deleted, in an alias ":" too. Always returns true, even if it changes nothing.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    /// False, and nothing changes, for a block that is not within the table.
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;

    /// Appends an entry without cleaning it; duplicates are kept.
    void add(const QString& resource, const QString& alias);

    /// Replaces the selected row's resource string without cleaning it and without a change
    /// notification.
    void setResource(const QString& resource);

    /// Notifies the views that everything may have changed.
    void refresh();

    bool isDirty() const;
    void setDirty(bool dirty);

    const QvVisa::GpibPropertiesMap& getGpibProperties() const;
    const QvVisa::SerialPropertiesMap& getSerialProperties() const;
    unsigned short getProvider() const;

    /// Each replaces the whole value and marks the model dirty, but only if the value differs.
    void setGpibProperties(const QvVisa::GpibPropertiesMap& properties);
    void setSerialProperties(const QvVisa::SerialPropertiesMap& properties);
    void setProvider(unsigned short provider);

    /// The selection of the view that shows the table, null without one. Not owned.
    QItemSelectionModel* m_selectionModel = nullptr;

signals:
    /// After every accepted edit of a cell, with the cleaned text.
    void editCompleted(const QString& text);
    void dirtyHasChanged(bool bDirty);

public slots:
    /// Appends an empty entry.
    void addEntry();
    /// Removes the row of the selection's current index, if there is a selection.
    void removeSelectedEntry();
    /// Writes entries, serial settings and provider to the store and its file. Clean afterwards,
    /// even if the file cannot be written; only when memory runs out before the store has the
    /// entries, the model stays dirty and store and file stay as they were.
    void save();

private:
    bool isRow(int row) const;
    void shiftPersistentIndexesDown(int row);

    /// (resource string, alias), one for each row.
    std::vector<std::pair<QString, QString>> m_entries;
    QvVisa::GpibPropertiesMap m_gpibProperties;
    QvVisa::SerialPropertiesMap m_serialProperties;
    bool m_dirty = false;
    unsigned short m_provider = 0;
};
