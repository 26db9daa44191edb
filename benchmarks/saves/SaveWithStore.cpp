// SPDX-License-Identifier: MIT
// What the window's Save does, for tools/compare-saves: loads the configuration file that
// QVVISACONFFILE names, replaces "old" at the start of its resources by "new", and saves.
#include "config/ConfigurationFile.h"
#include "config/WriteSignals.h"

int main()
{
    QvVisa::ignoreWriteSignals();
    QvVisa::ConfigurationFile& store = *QvVisa::ConfigurationFile::getInstance();
    for (std::string& resource : store.m_resources) {
        if (resource.rfind("old", 0) == 0) {
            resource.replace(0, 3, "new");
        }
    }
    store.save();
}
