// SPDX-License-Identifier: MIT
// The properties dialog's tree of GPIB boards.
#include "gui/PropertyDialog.h"

#include "ui_PropertyDialog.h"

#include "gui/DeviceItem.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QMenu>
#include <QSignalBlocker>

#include <cstdint>
#include <iterator>

namespace gui {

namespace {

/// The tree shows the boards in the order of the map, so a top-level row is an index into it.
void eraseRow(QvVisa::GpibPropertiesMap& boards, int row)
{
    if (row >= 0 && static_cast<std::size_t>(row) < boards.size()) {
        boards.erase(std::next(boards.begin(), row));
    }
}

} // namespace

void PropertyDialog::redrawtree()
{
    QTreeWidget& tree = *m_ui->PropertyTree;
    const QSignalBlocker blocker(tree);
    tree.setHeaderLabels({QCoreApplication::translate("PropertyDialog", "Device No"),
                          QCoreApplication::translate("PropertyDialog", "Primary Address"),
                          QCoreApplication::translate("PropertyDialog", "System Controller")});
    tree.header()->setVisible(true);
    tree.clear();
    QList<QTreeWidgetItem*> items;
    items.reserve(static_cast<int>(m_gpibProperties.size()));
    for (const auto& device : m_gpibProperties) {
        items.append(new DeviceItem(device, 0));
    }
    tree.addTopLevelItems(items);
}

void PropertyDialog::itemChanged(QTreeWidgetItem* item, int column)
{
    const bool changesNumber = column == DeviceItem::BoardNumberColumn;
    if (item->parent() == nullptr) {
        if (changesNumber) {
            redrawtree();
        }
        return;
    }
    bool hasBoard = false;
    bool hasAddress = false;
    const int board = item->text(DeviceItem::BoardNumberColumn).toInt(&hasBoard, 10);
    const int address = item->text(DeviceItem::PrimaryAddressColumn).toInt(&hasAddress, 10);
    const bool isController = item->checkState(DeviceItem::SystemControllerColumn) == Qt::Checked;
    if (!hasBoard || !hasAddress) {
        redrawtree();
        return;
    }
    if (changesNumber) {
        eraseRow(m_gpibProperties, m_ui->PropertyTree->indexOfTopLevelItem(item->parent()));
    }
    // Deliberately a new record: the secondary address is reset, and a board that already has the
    // number is replaced. Numbers wrap at 16 bits.
    QvVisa::SGpibProperties properties;
    properties.primaryAddress = static_cast<std::uint16_t>(address);
    properties.systemController = isController ? 1 : 0;
    m_gpibProperties[static_cast<unsigned short>(board)] = properties;
    if (changesNumber) {
        redrawtree();
    }
}

void PropertyDialog::addDevice()
{
    // After board 65535 the number wraps to 0 and replaces that board.
    const unsigned short board =
        m_gpibProperties.empty()
            ? static_cast<unsigned short>(0)
            : static_cast<unsigned short>(m_gpibProperties.rbegin()->first + 1);
    m_gpibProperties[board] = QvVisa::SGpibProperties();
    redrawtree();
}

void PropertyDialog::removeDevice()
{
    const QList<QTreeWidgetItem*> selected = m_ui->PropertyTree->selectedItems();
    if (selected.isEmpty()) {
        return;
    }
    QTreeWidgetItem* item = selected.first();
    if (item->parent() != nullptr) {
        item = item->parent();
    }
    eraseRow(m_gpibProperties, m_ui->PropertyTree->indexOfTopLevelItem(item));
    redrawtree();
}

void PropertyDialog::treePopupMenu(QPoint pos)
{
    const QModelIndex index = m_ui->PropertyTree->indexAt(pos);
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(m_ui->actionAdd_Device);
    if (index.row() >= 0) {
        menu->addAction(m_ui->actionRemove_Device);
    }
    menu->popup(m_ui->PropertyTree->viewport()->mapToGlobal(pos));
}

} // namespace gui
