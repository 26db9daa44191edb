// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationFile.h"
#include "model/ConfigurationModel.h"

#include <QString>

#include <utility>
#include <vector>

namespace support {

/// (resource string, alias), one for each row.
using Rows = std::vector<std::pair<QString, QString>>;

inline QString textAt(const ConfigurationModel& model, int row, int column)
{
    return model.data(model.index(row, column)).toString();
}

inline Rows rowsOf(const ConfigurationModel& model)
{
    Rows rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        rows.emplace_back(textAt(model, row, ConfigurationModel::ResourceColumn),
                          textAt(model, row, ConfigurationModel::AliasColumn));
    }
    return rows;
}

/// A row that says of itself which it is.
inline std::pair<QString, QString> numberedRow(int number)
{
    return {QStringLiteral("GPIB0::%1::INSTR").arg(number), QStringLiteral("dev%1").arg(number)};
}

inline void addNumberedRows(ConfigurationModel& model, int count, int first = 0)
{
    for (int number = first; number < first + count; ++number) {
        const auto [resource, alias] = numberedRow(number);
        model.add(resource, alias);
    }
}

} // namespace support
