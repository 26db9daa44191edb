# SPDX-License-Identifier: MIT
"""On a desktop that is scaled, windows have that scale, and at 150 % each fits a common screen."""

import program
import scenario
from desktop import expect_equal
from program import COMPOSER, FIND, HEADER, PROPERTIES, UNSAVED

CONTENT = HEADER + b"ASRL1::INSTR\nASRL2::INSTR\n"
BENCH = "resource ASRL1::INSTR\n"


def expect_fits(user, title):
    desktop = user.desktop
    window = desktop.window(title)
    _, _, width, height = desktop.geometry(window)
    left, right, top, bottom = desktop.frame(window)
    room = desktop.free_size()
    fits = width + left + right <= room[0] and height + top + bottom <= room[1]
    expect_equal(fits, True, f"{title}: {width}x{height} fits {room}")


def open_every_window(user):
    """The window and each of its dialogs in turn, by the keyboard."""
    desktop = user.desktop
    yield program.MAIN
    user.select_by_keyboard()
    # From the table: Add, Remove, then, with a row selected, Edit, Find, properties.
    desktop.key("Tab", "space")
    yield COMPOSER
    user.cancel(COMPOSER)
    desktop.key(*["Tab"] * 3, "space")
    yield FIND
    user.cancel(FIND)
    desktop.key("Tab", "space")
    yield PROPERTIES
    user.cancel(PROPERTIES)
    desktop.key(*["Tab"] * 2, "F2")
    desktop.retype("ASRL3::INSTR")
    user.close()
    yield UNSAVED
    desktop.key("alt+n")
    user.wait_ended()


def every_window_fits_at_150_percent(desktop):
    user = program.started(desktop, content=CONTENT, bench=BENCH)
    for title in open_every_window(user):
        expect_fits(user, title)
        if title == program.MAIN:
            expect_equal(desktop.geometry(user.main)[2:], (900, 600), "size of the main window")


scenario.run(every_window_fits_at_150_percent, size=(1920, 1080), dots=144)
