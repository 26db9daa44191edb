// SPDX-License-Identifier: MIT
#include "model/ConfigurationModel.h"

#include "config/ConfigurationFile.h"

#include <QItemSelectionModel>

#include <mutex>
#include <new>
#include <string>

namespace {

QString fromLatin1(const std::string& text)
{
    return QString::fromLatin1(text.data(), static_cast<int>(text.size()));
}

std::string toLatin1(const QString& text)
{
    return text.toLatin1().toStdString();
}

/// Removes what would break the file's "alias=resource" lines.
QString cleaned(const QString& text, int column)
{
    QString result = text.trimmed();
    result.replace(QLatin1Char(' '), QLatin1Char('_'));
    result.remove(QLatin1Char('='));
    result.remove(QLatin1Char('#'));
    result.remove(QLatin1Char(';'));
    if (column == ConfigurationModel::AliasColumn) {
        result.remove(QLatin1Char(':'));
    }
    return result;
}

} // namespace

ConfigurationModel::ConfigurationModel(QObject* parent) : QAbstractTableModel(parent)
{
    loaddata();
}

void ConfigurationModel::loaddata()
{
    m_entries.clear();
    // getInstance() in another thread may reload, which replaces the tables.
    const std::lock_guard<std::recursive_mutex> lock(QvVisa::ConfigurationFile::getMutex());
    const QvVisa::ConfigurationFile* store = QvVisa::ConfigurationFile::getInstance();
    m_entries.reserve(store->m_resources.size() + store->m_aliases.size());
    for (const std::string& resource : store->m_resources) {
        m_entries.emplace_back(fromLatin1(resource), QString());
    }
    for (const auto& [alias, resource] : store->m_aliases) {
        m_entries.emplace_back(fromLatin1(resource), fromLatin1(alias));
    }
    setDirty(false);
    m_serialProperties = store->m_serialProperties;
    m_provider = store->m_provider;
}

int ConfigurationModel::rowCount(const QModelIndex&) const
{
    return static_cast<int>(m_entries.size());
}

int ConfigurationModel::columnCount(const QModelIndex&) const
{
    return ColumnCount;
}

Qt::ItemFlags ConfigurationModel::flags(const QModelIndex&) const
{
    return Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsEnabled;
}

QVariant ConfigurationModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case ResourceColumn:
        return QStringLiteral("Resource identifier");
    case AliasColumn:
        return QStringLiteral("Alias");
    default:
        return {};
    }
}

bool ConfigurationModel::isRow(int row) const
{
    return row >= 0 && row < rowCount();
}

QVariant ConfigurationModel::data(const QModelIndex& index, int role) const
{
    if ((role != Qt::DisplayRole && role != Qt::EditRole) || !isRow(index.row())) {
        return {};
    }
    const auto& [resource, alias] = m_entries[static_cast<std::size_t>(index.row())];
    switch (index.column()) {
    case ResourceColumn:
        return resource;
    case AliasColumn:
        return alias;
    default:
        return {};
    }
}

bool ConfigurationModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole) {
        return true;
    }
    const QString text = cleaned(value.toString(), index.column());
    const bool isCell = index.column() == ResourceColumn || index.column() == AliasColumn;
    if (isCell && isRow(index.row())) {
        auto& [resource, alias] = m_entries[static_cast<std::size_t>(index.row())];
        QString& cell = index.column() == ResourceColumn ? resource : alias;
        const bool changes = cell != text;
        cell = text;
        setDirty(m_dirty || changes);
    }
    emit editCompleted(text);
    return true;
}

/// removeRows() announces one row too many by design, so Qt would shift later persistent indexes
/// one row too far and an open editor would write into the row above its own; compensate first.
void ConfigurationModel::shiftPersistentIndexesDown(int row)
{
    QModelIndexList from;
    QModelIndexList to;
    for (const QModelIndex& index : persistentIndexList()) {
        if (index.row() >= row) {
            from.append(index);
            to.append(createIndex(index.row() + 1, index.column()));
        }
    }
    changePersistentIndexList(from, to);
}

bool ConfigurationModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (row < 0 || count < 0 || row > rowCount() - count) {
        return false;
    }
    shiftPersistentIndexesDown(row + count);
    // Deliberate: the last row announced is one past the last row removed.
    beginRemoveRows(parent, row, row + count);
    const auto first = m_entries.begin() + row;
    m_entries.erase(first, first + count);
    setDirty(true);
    endRemoveRows();
    refresh();
    return true;
}

void ConfigurationModel::add(const QString& resource, const QString& alias)
{
    m_entries.emplace_back(resource, alias);
    setDirty(true);
    refresh();
}

void ConfigurationModel::addEntry()
{
    add(QString(), QString());
}

void ConfigurationModel::removeSelectedEntry()
{
    if (m_selectionModel == nullptr || !m_selectionModel->hasSelection()) {
        return;
    }
    const int row = m_selectionModel->currentIndex().row();
    if (isRow(row)) {
        removeRows(row, 1, QModelIndex());
    }
}

void ConfigurationModel::setResource(const QString& resource)
{
    if (m_selectionModel == nullptr || !m_selectionModel->hasSelection()) {
        return;
    }
    const QModelIndexList rows = m_selectionModel->selectedRows(ResourceColumn);
    if (rows.isEmpty() || !isRow(rows.first().row())) {
        return;
    }
    QString& cell = m_entries[static_cast<std::size_t>(rows.first().row())].first;
    const bool changes = cell != resource;
    cell = resource;
    setDirty(m_dirty || changes);
}

void ConfigurationModel::refresh()
{
    // The range deliberately ends one past the last row and column.
    emit dataChanged(createIndex(0, 0), createIndex(rowCount(), columnCount()));
    emit headerDataChanged(Qt::Vertical, 0, rowCount());
}

bool ConfigurationModel::isDirty() const
{
    return m_dirty;
}

void ConfigurationModel::setDirty(bool dirty)
{
    if (m_dirty != dirty) {
        m_dirty = dirty;
        emit dirtyHasChanged(dirty);
    }
}

const QvVisa::GpibPropertiesMap& ConfigurationModel::getGpibProperties() const
{
    return m_gpibProperties;
}

const QvVisa::SerialPropertiesMap& ConfigurationModel::getSerialProperties() const
{
    return m_serialProperties;
}

unsigned short ConfigurationModel::getProvider() const
{
    return m_provider;
}

void ConfigurationModel::setGpibProperties(const QvVisa::GpibPropertiesMap& properties)
{
    if (!(m_gpibProperties == properties)) {
        m_gpibProperties = properties;
        setDirty(true);
    }
}

void ConfigurationModel::setSerialProperties(const QvVisa::SerialPropertiesMap& properties)
{
    if (!(m_serialProperties == properties)) {
        m_serialProperties = properties;
        setDirty(true);
    }
}

void ConfigurationModel::setProvider(unsigned short provider)
{
    if (m_provider != provider) {
        m_provider = provider;
        setDirty(true);
    }
}

void ConfigurationModel::save()
{
    // An exception must not reach the event loop. Entries that did not reach the store stay dirty.
    try {
        std::vector<std::pair<std::string, std::string>> entries;
        entries.reserve(m_entries.size());
        for (const auto& [resource, alias] : m_entries) {
            entries.emplace_back(toLatin1(resource), toLatin1(alias));
        }
        QvVisa::SerialPropertiesMap serialProperties = m_serialProperties;
        const std::lock_guard<std::recursive_mutex> lock(QvVisa::ConfigurationFile::getMutex());
        QvVisa::ConfigurationFile* store = QvVisa::ConfigurationFile::getInstance();
        if (!store->setData(entries)) {
            return;
        }
        store->m_serialProperties.swap(serialProperties);
        store->setProvider(m_provider);
        store->save();
    } catch (const std::bad_alloc&) {
        return;
    }
    setDirty(false);
}
