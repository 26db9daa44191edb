// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationRecords.h"

#include <QTreeWidgetItem>

/// A GPIB board in the properties dialog's tree: a row "Device N" with one editable child row,
/// which shows board number, primary address and, as a check box, whether the board is system
/// controller (checked for 1 only). The secondary address is not shown. GUI thread only.
class DeviceItem : public QTreeWidgetItem
{
public:
    enum Column
    {
        BoardNumberColumn,
        PrimaryAddressColumn,
        SystemControllerColumn
    };

    /// The tree that the item is added to owns it. The type is passed to QTreeWidgetItem.
    DeviceItem(const QvVisa::GpibPropertiesMap::value_type& device, int type);
    ~DeviceItem() override;
};
