// SPDX-License-Identifier: MIT
#include "tests/config/store/StoreTest.h"

#include "tests/support/Files.h"

const std::string StoreTest::s_lines = ":Provider=17\n"
                                       "GPIB0::12::INSTR\n"
                                       "dmm = TCPIP0::10.0.0.5::INSTR\n"
                                       ":GPIBProperty[DeviceNo=2].PrimaryAddress=5\n"
                                       ":SerialProperty[DeviceNo=1].Baudrate=115200\n";

FileContents StoreTest::contentsOfLines()
{
    return {{{"DMM", "TCPIP0::10.0.0.5::INSTR"}},
            {"GPIB0::12::INSTR"},
            {{2, {5, 65535, 1}}},
            {{1, {115200, 8, 0, 0, 0}}},
            17};
}

FileContents StoreTest::held(const QvVisa::ConfigurationFile& store)
{
    FileContents contents{
        store.m_aliases, store.m_resources, {}, store.m_serialProperties, store.m_provider};
    QvVisa::SGpibProperties board;
    if (store.getGpibProperties(2, board)) {
        contents.gpib[2] = board;
    }
    return contents;
}

void StoreTest::write(std::string_view bytes, std::int64_t modificationTime) const
{
    support::writeFile(file(), bytes);
    support::setModificationTime(file(), modificationTime);
}
