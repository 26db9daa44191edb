#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The file is changed by another program while the window is open."""

import program
import scenario

HEADER = b":QvVisaConfigurationFileVersion01\n:Provider=3674\n"
BEFORE = HEADER + b"A=ASRL1::INSTR\n"
EDITED = HEADER + b"B=ASRL1::INSTR\n"
OTHERS = (b":QvVisaConfigurationFileVersion01 theirs\n# a comment\n:Provider=4086\n"
          b"GPIB0::7::INSTR\nC=ASRL9::INSTR\n")


def started(desktop):
    user = program.from_environment(desktop, content=BEFORE)
    user.start()
    return user


def ended(user):
    user.close()
    user.wait_ended()


def edit_and_save(user):
    user.edit_cell(0, "alias", "B")
    user.save()


def the_table_stays_and_a_save_overwrites_the_change(desktop):
    user = started(desktop)
    user.file.write_bytes(OTHERS)
    edit_and_save(user)
    user.expect_file(EDITED)
    ended(user)
    user.expect_file(EDITED)


def without_a_save_the_change_stays(desktop):
    user = started(desktop)
    user.file.write_bytes(OTHERS)
    user.press("properties")
    user.cancel(program.PROPERTIES)
    ended(user)
    user.expect_file(OTHERS)
    # The next start shows it.
    user.start()
    user.edit_cell(0, "resource", "GPIB0::8::INSTR")
    user.save()
    user.expect_file(b":QvVisaConfigurationFileVersion01\n:Provider=4086\n"
                     b"GPIB0::8::INSTR\nC=ASRL9::INSTR\n")
    ended(user)


def an_answer_of_no_leaves_the_change(desktop):
    user = started(desktop)
    user.edit_cell(0, "alias", "B")
    user.wait_can_save()
    user.file.write_bytes(OTHERS)
    user.close()
    desktop.window(program.UNSAVED)
    desktop.key("alt+n")
    user.wait_ended()
    user.expect_file(OTHERS)


def a_file_that_has_gone_is_written_anew(desktop):
    user = started(desktop)
    user.file.unlink()
    edit_and_save(user)
    user.expect_file(EDITED)
    ended(user)


def a_file_that_has_become_something_else_is_replaced(desktop):
    user = started(desktop)
    user.file.write_bytes(b"no configuration at all\n")
    edit_and_save(user)
    user.expect_file(EDITED)
    ended(user)


scenario.run(the_table_stays_and_a_save_overwrites_the_change, without_a_save_the_change_stays,
             an_answer_of_no_leaves_the_change, a_file_that_has_gone_is_written_anew,
             a_file_that_has_become_something_else_is_replaced)
