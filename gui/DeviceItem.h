// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationRecords.h"

#include <QTreeWidgetItem>

/// A GPIB board in the properties dialog's tree: a row "Device N" with one editable row beneath
/// it, which shows board number, primary address and, as a check box, whether the board is system
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

    /// The item belongs to the tree it is added to. The type is QTreeWidgetItem's, 0 for none in
    /// particular.
    DeviceItem(const QvVisa::GpibPropertiesMap::value_type& device, int type);
    ~DeviceItem() override;
};
