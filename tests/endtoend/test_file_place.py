#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The file that is saved, that none is created, and what becomes of another program's change."""

import program
import scenario
from desktop import expect_equal
from program import BEFORE, EDITED, HEADER

OTHERS = (b":QvVisaConfigurationFileVersion01 theirs\n# a comment\n:Provider=4086\n"
          b"GPIB0::7::INSTR\nC=ASRL9::INSTR\n")


def without_a_file_none_is_written(desktop):
    user = program.started(desktop)
    assert not user.can_save()
    user.press("add")
    user.compose(0, "DMM", {2: "meter"})
    user.save()
    user.end()
    expect_equal(user.files(), [], "files written")


def file_created_later_is_saved(desktop):
    user = program.started(desktop)
    user.press("add")
    user.compose(5, "BALANCE", {1: "3"})
    user.save()
    expect_equal(user.files(), [], "files written")
    file = user.write_in_home(b":QvVisaConfigurationFileVersion01\n")
    user.edit_cell(0, "alias", "SCALES")
    user.save()
    expect_equal(file.read_bytes(), HEADER + b"SCALES=ASRL3::INSTR\n", str(file))
    user.end()


def file_in_the_home_folder_is_saved(desktop):
    user = program.from_environment(desktop)
    file = user.write_in_home(BEFORE)
    user.start()
    user.edit()
    user.save()
    user.end()
    expect_equal(file.read_bytes(), EDITED, str(file))
    expect_equal(user.files(), [file], "files")


def save_overwrites_anothers_change(desktop):
    user = program.started(desktop, content=BEFORE)
    user.file.write_bytes(OTHERS)
    user.edit()
    user.save()
    user.expect_file(EDITED)
    user.end()
    user.expect_file(EDITED)


def anothers_change_stays_without_a_save(desktop):
    user = program.started(desktop, content=BEFORE)
    user.file.write_bytes(OTHERS)
    user.press("properties")
    user.cancel(program.PROPERTIES)
    user.end()
    user.expect_file(OTHERS)
    # The next start shows it.
    user.start()
    user.edit_cell(0, "resource", "GPIB0::8::INSTR")
    user.save()
    user.expect_file(b":QvVisaConfigurationFileVersion01\n:Provider=4086\n"
                     b"GPIB0::8::INSTR\nC=ASRL9::INSTR\n")
    user.end()


scenario.run(without_a_file_none_is_written, file_created_later_is_saved,
             file_in_the_home_folder_is_saved, save_overwrites_anothers_change,
             anothers_change_stays_without_a_save)
