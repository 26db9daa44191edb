// SPDX-License-Identifier: MIT
#include "config/ConfigurationRecords.h"

#include <algorithm>

namespace QvVisa {

namespace {

template <typename Map>
bool haveEqualEntries(const Map& left, const Map& right)
{
    return left.size() == right.size() &&
           std::all_of(left.begin(), left.end(), [&right](const auto& entry) {
               const auto found = right.find(entry.first);
               return found != right.end() && entry.second == found->second;
           });
}

} // namespace

bool operator==(const SGpibProperties& left, const SGpibProperties& right)
{
    return left.primaryAddress == right.primaryAddress &&
           left.secondaryAddress == right.secondaryAddress &&
           left.systemController == right.systemController;
}

bool operator==(const SSerialProperties& left, const SSerialProperties& right)
{
    return left.baudrate == right.baudrate && left.dataBits == right.dataBits &&
           left.stopBits == right.stopBits && left.parity == right.parity &&
           left.flowControl == right.flowControl;
}

bool operator==(const GpibPropertiesMap& left, const GpibPropertiesMap& right)
{
    return haveEqualEntries(left, right);
}

bool operator==(const SerialPropertiesMap& left, const SerialPropertiesMap& right)
{
    return haveEqualEntries(left, right);
}

} // namespace QvVisa
