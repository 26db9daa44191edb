#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Another program changes the file while the window is open."""

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


def save_overwrites_the_change(desktop):
    user = started(desktop)
    user.file.write_bytes(OTHERS)
    edit_and_save(user)
    user.expect_file(EDITED)
    ended(user)
    user.expect_file(EDITED)


def change_stays_without_a_save(desktop):
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


scenario.run(save_overwrites_the_change, change_stays_without_a_save)
