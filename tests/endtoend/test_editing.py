#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Edits by the context menu, and without a mouse: cells, the context menu by its key, the tool bar
by Tab."""

import program
import scenario
from program import COMPOSER, FIND, HEADER

TWO_ROWS = HEADER + b"ASRL1::INSTR\nGPIB0::9::INSTR\n"
THREE_ROWS = HEADER + b"GPIB0::12::INSTR\nASRL1::INSTR\nASRL2::INSTR\n"
BENCH = """
resource GPIB0::9::INSTR
resource TCPIP0::192.168.10.21::inst0::INSTR
"""
AFTER_KEYS = b""":QvVisaConfigurationFileVersion01
:Provider=4086
GPIB0::13::INSTR
TCPIP0::192.168.10.21::inst0::INSTR
METER=QVIB::10.0.0.4
"""
ADD_ENTRY, REMOVE_ENTRY, EDIT_ENTRY, FIND_ENTRY = 1, 2, 3, 4  # places in the context menu
QVIB = 3


def context_menu_opens_dialogs_and_removes_the_row(desktop):
    user = program.started(desktop, content=TWO_ROWS)
    for entry, dialog in (ADD_ENTRY, COMPOSER), (EDIT_ENTRY, COMPOSER), (FIND_ENTRY, FIND):
        user.menu(user.cell(1))
        user.choose(entry)
        user.cancel(dialog)
    assert not user.can_save()
    user.menu(user.cell(1))
    user.choose(REMOVE_ENTRY)
    user.save()
    user.expect_file(HEADER + b"ASRL1::INSTR\n")


def menu_by_key(user, entry):
    user.desktop.key("Menu")
    user.desktop.popup()
    user.choose(entry)


def every_action_works_by_keys(desktop):
    user = program.started(desktop, content=THREE_ROWS, bench=BENCH)
    desktop.key("F2")
    desktop.retype("GPIB0::13::INSTR")
    desktop.key("Return")
    user.wait_can_save()
    desktop.key("Down")
    menu_by_key(user, FIND_ENTRY)
    user.choose_found(1)
    desktop.key("Down")
    menu_by_key(user, REMOVE_ENTRY)
    menu_by_key(user, ADD_ENTRY)
    user.compose(QVIB, "METER", {1: "10.0.0.5"})
    # The new row is the last one.
    desktop.key("ctrl+End")
    menu_by_key(user, EDIT_ENTRY)
    user.compose(QVIB, None, {1: "10.0.0.4"})

    # Past Add, Remove, Edit and Find.
    desktop.key(*["Tab"] * 5, "space")
    desktop.window(program.PROPERTIES)
    # Without ports the first page is disabled, and Tab leads to the field of the second.
    desktop.key("Right", "Tab")
    desktop.retype("4086")
    user.accept_properties()
    user.expect_file(THREE_ROWS)
    desktop.key("Tab", "space")
    user.wait_file(AFTER_KEYS)
    # Save leaves the focus in the table.
    desktop.key("shift+Tab", "space")
    user.wait_ended()
    user.expect_file(AFTER_KEYS)


scenario.run(context_menu_opens_dialogs_and_removes_the_row, every_action_works_by_keys)
