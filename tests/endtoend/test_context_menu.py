#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The context menu by right click: on a row, beside the rows, and what its entries do."""

import program
import scenario
from program import BELOW_THE_ROWS, COMPOSER, FIND

HEADER = b":QvVisaConfigurationFileVersion01\n:Provider=3674\n"
BEFORE = HEADER + b"ASRL1::INSTR\nGPIB0::9::INSTR\n"
AFTER_REMOVAL = HEADER + b"ASRL1::INSTR\n"


def started(desktop):
    user = program.from_environment(desktop, content=BEFORE)
    user.start()
    return user


def a_row_has_four_entries(desktop):
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


def beside_the_rows_there_is_only_add(desktop):
    user = started(desktop)
    on_row = desktop.geometry(user.menu(user.cell(0)))[3]
    desktop.key("Escape")
    desktop.wait_no_popup()
    beside = desktop.geometry(user.menu(BELOW_THE_ROWS))[3]
    assert beside * 3 < on_row, (beside, on_row)
    # One step up from nothing is the last entry: it must be the first as well.
    desktop.key("Up", "Return")
    user.cancel(COMPOSER)
    assert not user.can_save()


scenario.run(a_row_has_four_entries, beside_the_rows_there_is_only_add)
