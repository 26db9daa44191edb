#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A VISA library that does not come back from its search: what closing does, and how to get out."""

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


def the_closed_program_stays_until_the_library_answers(desktop):
    user = saved_and_closed(desktop)
    assert user.is_running()
    assert "viFindRsrc" not in user.calls()
    (desktop.folder / "go").touch()
    user.wait_ended()
    # The search was waited for, and ended well.
    assert user.calls().endswith("viClose(1) -> VI_SUCCESS\n")
    user.expect_file(EDITED)


def a_signal_ends_it_and_the_save_stays(desktop):
    user = saved_and_closed(desktop)
    user.end_by(signal.SIGTERM)
    user.expect_file(EDITED)


def a_kill_before_the_save_leaves_the_old_file(desktop):
    user = program.from_environment(desktop, content=BEFORE, bench=BENCH)
    user.start()
    user.edit_cell(0, "alias", "B")
    user.wait_can_save()
    user.end_by(signal.SIGKILL)
    user.expect_file(BEFORE)


scenario.run(the_closed_program_stays_until_the_library_answers,
             a_signal_ends_it_and_the_save_stays, a_kill_before_the_save_leaves_the_old_file)
