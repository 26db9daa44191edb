#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Closing and killing the program while its search does not return."""

import signal

import program
import scenario

BEFORE = b":QvVisaConfigurationFileVersion01\n:Provider=3674\nA=ASRL1::INSTR\n"
EDITED = b":QvVisaConfigurationFileVersion01\n:Provider=3674\nB=ASRL1::INSTR\n"
BENCH = "resource ASRL1::INSTR\nwait-for-file go for=?*\n"


def saved_and_closed(desktop):
    user = program.from_environment(desktop, content=BEFORE, bench=BENCH)
    user.start()
    user.edit_cell(0, "alias", "B")
    user.save()
    user.close()
    desktop.wait_gone(program.MAIN)
    return user


def closed_program_runs_until_the_search_returns(desktop):
    user = saved_and_closed(desktop)
    assert user.is_running()
    assert "viFindRsrc" not in user.calls()
    (desktop.folder / "go").touch()
    user.wait_ended()
    assert user.calls().endswith("viClose(1) -> VI_SUCCESS\n")
    user.expect_file(EDITED)


def signal_ends_the_closed_program(desktop):
    user = saved_and_closed(desktop)
    user.end_by(signal.SIGTERM)
    user.expect_file(EDITED)


def kill_before_the_save_keeps_the_file(desktop):
    user = program.from_environment(desktop, content=BEFORE, bench=BENCH)
    user.start()
    user.edit_cell(0, "alias", "B")
    user.wait_can_save()
    user.end_by(signal.SIGKILL)
    user.expect_file(BEFORE)


scenario.run(closed_program_runs_until_the_search_returns,
             signal_ends_the_closed_program, kill_before_the_save_keeps_the_file)
