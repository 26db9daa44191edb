#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Which file is edited, and that without any nothing is written anywhere."""

import program
import scenario
from desktop import expect_equal

HEADER = b":QvVisaConfigurationFileVersion01\n:Provider=3674\n"
BEFORE = HEADER + b"A=ASRL1::INSTR\n"
EDITED = HEADER + b"B=ASRL1::INSTR\n"


def without_a_file_nothing_is_written(desktop):
    user = program.from_environment(desktop)
    user.start()
    assert not user.can_save()
    user.press("add")
    user.compose(0, "DMM", {2: "meter"})
    user.save()
    user.close()
    user.wait_ended()
    expect_equal(user.files(), [], "files written")


def a_file_made_later_takes_the_next_save(desktop):
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


def in_the_home_folder(desktop):
    user = program.from_environment(desktop)
    file = user.home / ".quorvane/visa.conf"
    file.parent.mkdir()
    file.write_bytes(BEFORE)
    edit_and_save(user)
    expect_equal(file.read_bytes(), EDITED, str(file))
    expect_equal(user.files(), [file], "files")


def in_the_working_folder_first(desktop):
    user = program.from_environment(desktop)
    in_home = user.home / ".quorvane/visa.conf"
    in_home.parent.mkdir()
    in_home.write_bytes(HEADER)
    file = user.working_folder / "visa.conf"
    file.write_bytes(BEFORE)
    edit_and_save(user)
    expect_equal(file.read_bytes(), EDITED, str(file))
    expect_equal(in_home.read_bytes(), HEADER, str(in_home))
    expect_equal(user.files(), [in_home, file], "files")


def named_by_the_environment_before_all(desktop):
    user = program.from_environment(desktop, content=BEFORE)
    in_working_folder = user.working_folder / "visa.conf"
    in_working_folder.write_bytes(HEADER)
    edit_and_save(user)
    user.expect_file(EDITED)
    expect_equal(in_working_folder.read_bytes(), HEADER, str(in_working_folder))


scenario.run(without_a_file_nothing_is_written, a_file_made_later_takes_the_next_save,
             in_the_home_folder, in_the_working_folder_first, named_by_the_environment_before_all)
