#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Instruments found by a search: a double click on an entry, and a refresh."""

import program
import scenario
from desktop import wait_for
from program import BEFORE, HEADER

BENCH = """
resource TCPIP0::192.168.10.21::inst0::INSTR
resource USB0::0x1234::0x5678::102764::INSTR
resource GPIB0::9::INSTR
"""


def composer_takes_a_found_resource(desktop):
    user = program.started(desktop, content=HEADER, bench=BENCH)
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
    user.end()


def refresh_finds_a_new_instrument(desktop):
    user = program.started(desktop, content=BEFORE, bench="")
    user.bench_file.write_text(BENCH)
    user.select(0)
    user.press("find")
    desktop.window(program.FIND)
    desktop.key("Tab", "space", "shift+Tab")
    user.double_click_found(2)
    user.wait_back(program.FIND)
    user.save()
    user.wait_file(HEADER + b"A=USB0::0x1234::0x5678::102764::INSTR\n")
    user.end()


scenario.run(composer_takes_a_found_resource, refresh_finds_a_new_instrument)
