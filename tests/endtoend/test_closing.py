#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Closing with unsaved changes, and closing and killing the program while its search does not
return."""

import signal

import program
import scenario
from program import BEFORE, EDITED, UNSAVED

HELD_BENCH = "resource ASRL1::INSTR\nwait-for-file go for=?*\n"


def cancel_keeps_the_window_and_no_leaves_the_file(desktop):
    user = program.started(desktop, content=BEFORE)
    user.edit()
    user.close()
    user.cancel(UNSAVED)
    assert user.is_running()
    assert user.can_save()
    user.expect_file(BEFORE)
    user.press("close")
    user.answer_unsaved("alt+n")
    user.expect_file(BEFORE)


def yes_saves_the_file(desktop):
    user = program.started(desktop, content=BEFORE)
    user.edit()
    user.close()
    user.answer_unsaved("alt+y")
    user.expect_file(EDITED)


def text_in_a_cell_editor_is_saved(desktop):
    user = program.started(desktop, content=BEFORE)
    desktop.click(user.main, user.cell(0, "alias"), times=2)
    desktop.retype("B")
    user.close()
    user.answer_unsaved("alt+y")
    user.expect_file(EDITED)


def edited_while_searching(desktop):
    user = program.from_environment(desktop, content=BEFORE, bench=HELD_BENCH)
    user.start()
    user.edit()
    return user


def saved_and_closed_while_searching(desktop):
    user = edited_while_searching(desktop)
    user.save()
    user.close()
    desktop.wait_gone(program.MAIN)
    return user


def closed_program_runs_until_the_search_returns(desktop):
    user = saved_and_closed_while_searching(desktop)
    assert user.is_running()
    assert "viFindRsrc" not in user.calls()
    (desktop.folder / "go").touch()
    user.wait_ended()
    assert user.calls().endswith("viClose(1) -> VI_SUCCESS\n")
    user.expect_file(EDITED)


def signal_ends_the_closed_program(desktop):
    user = saved_and_closed_while_searching(desktop)
    user.end_by(signal.SIGTERM)
    user.expect_file(EDITED)


def kill_before_the_save_keeps_the_file(desktop):
    user = edited_while_searching(desktop)
    user.end_by(signal.SIGKILL)
    user.expect_file(BEFORE)


scenario.run(cancel_keeps_the_window_and_no_leaves_the_file, yes_saves_the_file,
             text_in_a_cell_editor_is_saved, closed_program_runs_until_the_search_returns,
             signal_ends_the_closed_program, kill_before_the_save_keeps_the_file)
