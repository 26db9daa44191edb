#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The file that is saved, and that none is created."""

import program
import scenario
from desktop import expect_equal

HEADER = b":QvVisaConfigurationFileVersion01\n:Provider=3674\n"
BEFORE = HEADER + b"A=ASRL1::INSTR\n"
EDITED = HEADER + b"B=ASRL1::INSTR\n"


def without_a_file_none_is_written(desktop):
    user = program.from_environment(desktop)
    user.start()
    assert not user.can_save()
    user.press("add")
    user.compose(0, "DMM", {2: "meter"})
    user.save()
    user.close()
    user.wait_ended()
    expect_equal(user.files(), [], "files written")


def file_created_later_is_saved(desktop):
    user = program.from_environment(desktop)
    user.start()
    user.press("add")
    user.compose(5, "BALANCE", {1: "3"})
    user.save()
    expect_equal(user.files(), [], "files written")
    file = user.home / ".quorvane/visa.conf"
    file.parent.mkdir()
    file.write_bytes(b":QvVisaConfigurationFileVersion01\n")
    user.edit_cell(0, "alias", "SCALES")
    user.save()
    expect_equal(file.read_bytes(), HEADER + b"SCALES=ASRL3::INSTR\n", str(file))
    user.close()
    user.wait_ended()


def edit_and_save(user):
    user.start()
    user.edit_cell(0, "alias", "B")
    user.save()
    user.close()
    user.wait_ended()


def file_in_the_home_folder_is_saved(desktop):
    user = program.from_environment(desktop)
    file = user.home / ".quorvane/visa.conf"
    file.parent.mkdir()
    file.write_bytes(BEFORE)
    edit_and_save(user)
    expect_equal(file.read_bytes(), EDITED, str(file))
    expect_equal(user.files(), [file], "files")


scenario.run(without_a_file_none_is_written, file_created_later_is_saved,
             file_in_the_home_folder_is_saved)
