#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Instruments found by a search: a double click on an entry, and a refresh."""

import program
import scenario
from desktop import wait_for

HEADER = b":QvVisaConfigurationFileVersion01\n:Provider=3674\n"
BENCH = """
resource TCPIP0::192.168.10.21::inst0::INSTR
resource USB0::0x1234::0x5678::102764::INSTR
resource GPIB0::9::INSTR
"""


def composer_takes_a_found_resource(desktop):
    user = program.from_environment(desktop, content=HEADER, bench=BENCH)
    user.start()
    user.wait_scanned()
    user.press("add")
    composer = desktop.window(program.COMPOSER)
    desktop.key("Tab", "Tab", "space")
    user.double_click_found(0)
    wait_for(lambda: desktop.read(["xdotool", "getactivewindow"]).strip() == composer,
             "the composer to have the keyboard again")
    desktop.key("Return")
    user.wait_back(program.COMPOSER)
    user.save()
    user.wait_file(HEADER + b"GPIB0::9::INSTR\n")
    user.close()
    user.wait_ended()


def refresh_finds_a_new_instrument(desktop):
    user = program.from_environment(desktop, content=HEADER + b"A=ASRL1::INSTR\n", bench="")
    user.start()
    user.wait_scanned()
    user.bench_file.write_text(BENCH)
    user.select(0)
    user.press("find")
    desktop.window(program.FIND)
    desktop.key("Tab", "space", "shift+Tab")
    user.double_click_found(2)
    user.wait_back(program.FIND)
    user.save()
    user.wait_file(HEADER + b"A=USB0::0x1234::0x5678::102764::INSTR\n")
    user.close()
    user.wait_ended()


scenario.run(composer_takes_a_found_resource, refresh_finds_a_new_instrument)
