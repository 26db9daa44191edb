// SPDX-License-Identifier: MIT
#include "simulator/BenchEnvironment.h"

#include "simulator/BenchFile.h"
#include "simulator/Environment.h"

#include <cstdio>
#include <string>

namespace simulator {

const std::string_view builtinBench = R"(
resource TCPIP0::192.0.2.10::inst0::INSTR          idn="Quorvane,Stand-in multimeter,100001,1.0"
resource TCPIP0::192.0.2.11::hislip0::INSTR        idn="Quorvane,Stand-in oscilloscope,100002,1.0"
resource TCPIP0::192.0.2.12::5025::SOCKET          idn="Quorvane,Stand-in power supply,100003,1.0"
resource USB0::0x1234::0x5678::100004::INSTR       idn="Quorvane,Stand-in power meter,100004,1.0"
resource GPIB0::20::INSTR                          idn="Quorvane,Stand-in generator,100005,1.0"
resource ASRL1::INSTR                              idn="Quorvane,Stand-in counter,100006,1.0"
resource ASRL2::INSTR                              idn="Quorvane,Stand-in thermometer,100007,1.0"
)";

Bench benchFromEnvironment()
{
    const std::string path = environmentValue("QVVISA_BENCH");
    if (path.empty()) {
        return BenchFile::parse(builtinBench).bench();
    }
    const BenchFile file = BenchFile::read(path);
    for (const BenchFile::Message& message : file.messages()) {
        const std::string line = message.line != 0 ? std::to_string(message.line) + ": " : " ";
        std::fprintf(stderr, "%s:%s%s\n", path.c_str(), line.c_str(), message.text.c_str());
    }
    return file.bench();
}

} // namespace simulator
