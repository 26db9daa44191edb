// SPDX-License-Identifier: MIT
#include "gui/DeviceItem.h"

#include <QCoreApplication>
#include <QStringList>

DeviceItem::DeviceItem(const QvVisa::GpibPropertiesMap::value_type& device, int type)
    : QTreeWidgetItem(type)
{
    const auto& [board, properties] = device;
    setText(BoardNumberColumn,
            QCoreApplication::translate("PropertyDialog", "Device %1").arg(board));
    const QStringList texts{QString::number(board), QString::number(properties.primaryAddress)};
    auto* child = new QTreeWidgetItem(this, texts, type);
    child->setFlags(child->flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
    child->setCheckState(SystemControllerColumn,
                         properties.systemController == 1 ? Qt::Checked : Qt::Unchecked);
}

DeviceItem::~DeviceItem() = default;
