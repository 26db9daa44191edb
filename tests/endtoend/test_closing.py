#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Closing with unsaved changes, by the window manager and by the tool bar."""

import program
import scenario
from program import UNSAVED

BEFORE = b":QvVisaConfigurationFileVersion01\n:Provider=3674\nA=ASRL1::INSTR\n"
EDITED = b":QvVisaConfigurationFileVersion01\n:Provider=3674\nB=ASRL1::INSTR\n"


def edited_program(desktop):
    user = program.from_environment(desktop, content=BEFORE)
    user.start()
    user.edit_cell(0, "alias", "B")
    user.wait_can_save()
    return user


def answer(user, key):
    user.desktop.window(UNSAVED)
    user.desktop.key(key)


def cancel_keeps_the_window_and_no_the_file(desktop):
    user = edited_program(desktop)
    user.close()
    user.cancel(UNSAVED)
    assert user.is_running()
    assert user.can_save()
    user.expect_file(BEFORE)
    user.press("close")
    answer(user, "alt+n")
    user.wait_ended()
    user.expect_file(BEFORE)


def yes_saves_the_file(desktop):
    user = edited_program(desktop)
    user.close()
    answer(user, "alt+y")
    user.wait_ended()
    user.expect_file(EDITED)


def text_in_a_cell_editor_is_saved(desktop):
    user = program.from_environment(desktop, content=BEFORE)
    user.start()
    desktop.click(user.main, user.cell(0, "alias"), times=2)
    desktop.retype("B")
    user.close()
    answer(user, "alt+y")
    user.wait_ended()
    user.expect_file(EDITED)


scenario.run(cancel_keeps_the_window_and_no_the_file, yes_saves_the_file,
             text_in_a_cell_editor_is_saved)
