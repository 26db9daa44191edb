#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Closing with and without unsaved changes, and what each answer does to the file."""

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


def nothing_changed_asks_nothing(desktop):
    user = program.from_environment(desktop, content=BEFORE)
    user.start()
    user.close()
    user.wait_ended()
    user.expect_file(BEFORE)


def cancel_keeps_the_window_and_no_keeps_the_file(desktop):
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


def cancel_leaves_the_edit_to_be_saved(desktop):
    user = edited_program(desktop)
    user.close()
    user.cancel(UNSAVED)
    user.save()
    user.expect_file(EDITED)
    user.close()
    user.wait_ended()


def yes_saves(desktop):
    user = edited_program(desktop)
    user.close()
    answer(user, "alt+y")
    user.wait_ended()
    user.expect_file(EDITED)


def a_text_still_in_the_cell_counts(desktop):
    user = program.from_environment(desktop, content=BEFORE)
    user.start()
    desktop.click(user.main, user.cell(0, "alias"), times=2)
    desktop.retype("B")
    user.close()
    answer(user, "alt+y")
    user.wait_ended()
    user.expect_file(EDITED)


def a_running_search_is_waited_for(desktop):
    user = program.from_environment(desktop, content=BEFORE, bench="wait-for-file answer")
    user.start()
    user.wait_searching()
    user.edit_cell(0, "alias", "B")
    user.wait_can_save()
    user.close()
    answer(user, "alt+y")
    desktop.wait_gone(program.MAIN)
    # The file is written, and the process stays until the library answers.
    user.wait_file(EDITED)
    assert user.is_running()
    (user.bench_file.parent / "answer").touch()
    user.wait_ended()
    user.wait_scanned()
    user.expect_file(EDITED)


scenario.run(nothing_changed_asks_nothing, cancel_keeps_the_window_and_no_keeps_the_file,
             cancel_leaves_the_edit_to_be_saved, yes_saves, a_text_still_in_the_cell_counts,
             a_running_search_is_waited_for)
