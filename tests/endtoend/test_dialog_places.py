#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The dialogs restore their size, position and maximised state."""

import program
import scenario
from desktop import wait_for
from program import COMPOSER, FIND, PROPERTIES

CONTENT = b":QvVisaConfigurationFileVersion01\n:Provider=3674\nA=ASRL1::INSTR\n"
BENCH = "resource ASRL1::INSTR\n"


def started(desktop):
    user = program.from_environment(desktop, content=CONTENT, bench=BENCH)
    user.start()
    user.wait_scanned()
    return user


def restart(user):
    user.close()
    user.wait_ended()
    user.start()
    user.wait_scanned()


def open_dialog(user, button, title):
    user.select(0)
    user.press(button)
    return user.desktop.window(title)


def wait_at(desktop, window, place):
    wait_for(lambda: desktop.geometry(window) == place,
             lambda: f"the window at {place}; it is at {desktop.geometry(window)}")


def dialogs_restore_size_and_position(desktop):
    user = started(desktop)
    places = {}
    for number, (button, title) in enumerate((("add", COMPOSER), ("find", FIND),
                                              ("properties", PROPERTIES))):
        window = open_dialog(user, button, title)
        places[button, title] = desktop.place(window, (760 + number, 610 + number),
                                              (100 + 40 * number, 60 + 40 * number))
        user.cancel(title)
    for what in "again", "after a restart":
        for (button, title), place in places.items():
            wait_at(desktop, open_dialog(user, button, title), place)
            user.cancel(title)
        if what == "again":
            restart(user)
    assert not user.can_save()
    user.close()
    user.wait_ended()
    user.expect_file(CONTENT)


def leave_maximised(user, button, title):
    window = open_dialog(user, button, title)
    user.desktop.key("alt+F10")
    wait_for(lambda: user.desktop.is_maximised(window), f"{title} to be maximised")
    user.cancel(title)


def find_and_properties_open_maximised(desktop):
    user = started(desktop)
    for button, title in ("find", FIND), ("properties", PROPERTIES):
        leave_maximised(user, button, title)
    restart(user)
    for button, title in ("find", FIND), ("properties", PROPERTIES):
        window = open_dialog(user, button, title)
        wait_for(lambda: desktop.is_maximised(window), f"{title} to be maximised again")
        user.cancel(title)


def composer_does_not_open_maximised(desktop):
    user = started(desktop)
    leave_maximised(user, "add", COMPOSER)
    window = open_dialog(user, "add", COMPOSER)
    assert not desktop.is_maximised(window)
    user.cancel(COMPOSER)


scenario.run(dialogs_restore_size_and_position, find_and_properties_open_maximised,
             composer_does_not_open_maximised)
