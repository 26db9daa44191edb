#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The context menu that a right click on a row opens."""

import program
import scenario
from program import COMPOSER, FIND

HEADER = b":QvVisaConfigurationFileVersion01\n:Provider=3674\n"
BEFORE = HEADER + b"ASRL1::INSTR\nGPIB0::9::INSTR\n"
AFTER_REMOVAL = HEADER + b"ASRL1::INSTR\n"


def started(desktop):
    user = program.from_environment(desktop, content=BEFORE)
    user.start()
    return user


def entries_open_dialogs_and_remove_the_row(desktop):
    user = started(desktop)
    user.menu(user.cell(1))
    user.choose(1)
    user.cancel(COMPOSER)

    user.menu(user.cell(1))
    user.choose(3)
    user.cancel(COMPOSER)

    user.menu(user.cell(1))
    user.choose(4)
    user.cancel(FIND)
    assert not user.can_save()

    user.menu(user.cell(1))
    user.choose(2)
    user.save()
    user.expect_file(AFTER_REMOVAL)


scenario.run(entries_open_dialogs_and_remove_the_row)
