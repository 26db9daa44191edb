#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The main window opens centred at first. It and the dialogs restore their size, position and
maximised state."""

import program
import scenario
from desktop import expect_equal
from program import BEFORE, COMPOSER, FIND, PROPERTIES

BENCH = "resource ASRL1::INSTR\n"
DIALOGS = {"add": COMPOSER, "find": FIND, "properties": PROPERTIES}


def first_start_centres_the_window(desktop):
    user = program.started(desktop, content=BEFORE)
    x, y, width, height = desktop.geometry(user.main)
    left, right, top, bottom = desktop.frame(user.main)
    expect_equal((width, height), (600, 400), "size")
    free_width, free_height = desktop.free_size()
    assert free_height < desktop.size[1]
    # With or without the frame, as the window manager decides.
    assert abs(2 * x + width - free_width) <= 2 * (left + right), (x, y)
    assert abs(2 * y + height - free_height) <= 2 * (top + bottom), (x, y)
    assert not desktop.is_maximised(user.main)


def size_and_position_are_restored(desktop):
    user = program.started(desktop, content=BEFORE)
    left = desktop.place(user.main, (720, 333), (111, 222))
    user.end()
    user.start()
    desktop.wait_at(user.main, left)


def maximised_state_is_restored(desktop):
    user = program.started(desktop, content=BEFORE)
    desktop.key("alt+F10")
    desktop.wait_maximised(user.main)
    user.end()
    user.start()
    desktop.wait_maximised(user.main)
    desktop.key("alt+F10")
    desktop.wait_maximised(user.main, False)
    user.end()
    user.start()
    assert not desktop.is_maximised(user.main)


def open_dialog(user, button):
    user.select(0)
    user.press(button)
    return user.desktop.window(DIALOGS[button])


def restart(user):
    user.end()
    user.start()
    user.wait_scanned()


def dialogs_restore_size_and_position(desktop):
    user = program.started(desktop, content=BEFORE, bench=BENCH)
    places = {}
    for number, (button, title) in enumerate(DIALOGS.items()):
        places[button] = desktop.place(open_dialog(user, button), (760 + number, 610 + number),
                                       (100 + 40 * number, 60 + 40 * number))
        user.cancel(title)
    for what in "again", "after a restart":
        for button, title in DIALOGS.items():
            desktop.wait_at(open_dialog(user, button), places[button])
            user.cancel(title)
        if what == "again":
            restart(user)
    assert not user.can_save()
    user.end()
    user.expect_file(BEFORE)


def all_dialogs_but_the_composer_open_maximised_again(desktop):
    user = program.started(desktop, content=BEFORE, bench=BENCH)
    for button, title in DIALOGS.items():
        window = open_dialog(user, button)
        desktop.key("alt+F10")
        desktop.wait_maximised(window)
        user.cancel(title)
    assert not desktop.is_maximised(open_dialog(user, "add"))
    user.cancel(COMPOSER)
    restart(user)
    for button in "find", "properties":
        desktop.wait_maximised(open_dialog(user, button))
        user.cancel(DIALOGS[button])


scenario.run(first_start_centres_the_window, size_and_position_are_restored,
             maximised_state_is_restored, dialogs_restore_size_and_position,
             all_dialogs_but_the_composer_open_maximised_again)
