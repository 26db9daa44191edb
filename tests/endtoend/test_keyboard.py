#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The program without a mouse: cells, the context menu by its key, the tool bar by Tab."""

import program
import scenario

HEADER = b":QvVisaConfigurationFileVersion01\n:Provider="
BENCH = """
resource GPIB0::9::INSTR
resource TCPIP0::192.168.10.21::inst0::INSTR
"""
BEFORE = HEADER + b"3674\nGPIB0::12::INSTR\nASRL1::INSTR\nASRL2::INSTR\n"
AFTER = HEADER + b"""4086
GPIB0::13::INSTR
TCPIP0::192.168.10.21::inst0::INSTR
METER=QVIB::10.0.0.4
"""
ADD, REMOVE, EDIT, FIND = 1, 2, 3, 4  # places in the context menu
QVIB = 3


def menu(user, entry):
    user.desktop.key("Menu")
    user.desktop.popup()
    user.choose(entry)


def every_action_works_by_keys(desktop):
    user = program.from_environment(desktop, content=BEFORE, bench=BENCH)
    user.start()
    user.wait_scanned()
    desktop.key("F2")
    desktop.retype("GPIB0::13::INSTR")
    desktop.key("Return")
    user.wait_can_save()
    desktop.key("Down")
    menu(user, FIND)
    user.choose_found(1)
    desktop.key("Down")
    menu(user, REMOVE)
    menu(user, ADD)
    user.compose(QVIB, "METER", {1: "10.0.0.5"})
    # The new row is the last one.
    desktop.key("ctrl+End")
    menu(user, EDIT)
    user.compose(QVIB, None, {1: "10.0.0.4"})

    # Past Add, Remove, Edit and Find.
    desktop.key(*["Tab"] * 5, "space")
    desktop.window(program.PROPERTIES)
    # Without ports the first page is disabled, and Tab leads to the field of the second.
    desktop.key("Right", "Tab")
    desktop.retype("4086")
    user.accept_properties()
    user.expect_file(BEFORE)
    desktop.key("Tab", "space")
    user.wait_file(AFTER)
    # Save leaves the focus in the table.
    desktop.key("shift+Tab", "space")
    user.wait_ended()
    user.expect_file(AFTER)


scenario.run(every_action_works_by_keys)
