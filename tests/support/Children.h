// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <stdexcept>
#include <string>

namespace support {

/// Returns the object's descendant of that name and class; throws when there is none.
template <typename Child>
Child& child(const QObject& object, const char* name)
{
    auto* found = object.findChild<Child*>(QString::fromLatin1(name));
    if (found == nullptr) {
        throw std::runtime_error(std::string("no ") + Child::staticMetaObject.className() + " " +
                                 name);
    }
    return *found;
}

} // namespace support
