#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Stored positions and sizes that do not fit the screen."""

import program
import scenario
from desktop import Desktop
from program import BEFORE, EDITED

ODD_PLACES = {
    "left of and above the screen": "pos=@Point(-5000 -4000)\nsize=@Size(600 400)",
    "right of and below the screen": "pos=@Point(9000 7000)\nsize=@Size(600 400)",
    "the last pixel": "pos=@Point(1279 899)\nsize=@Size(600 400)",
    "the limits of an integer": "pos=@Point(2147483647 -2147483648)\nsize=@Size(600 400)",
    "an empty size": "pos=@Point(100 100)\nsize=@Size(0 0)",
    "a negative size": "pos=@Point(100 100)\nsize=@Size(-600 -400)",
    "larger than the screen": "pos=@Point(0 0)\nsize=@Size(5000 4000)",
    "no numbers": "pos=here\nsize=large\nfullscreen=perhaps",
}


def stored(user, settings):
    file = user.settings / "Quorvane/QvVisaConfigure.conf"
    file.parent.mkdir(exist_ok=True)
    file.write_text(f"[MainWindow]\n{settings}\n")


def edit_by_keyboard(user):
    """Uses keys alone: the window may be off the screen."""
    user.desktop.key("Down", "Right", "F2")
    user.desktop.retype("B")
    user.desktop.key("Return")
    user.close()
    user.answer_unsaved("alt+y")
    user.expect_file(EDITED)


def window_can_be_used_at_every_stored_place(desktop):
    for what, settings in ODD_PLACES.items():
        print(what, flush=True)
        user = program.from_environment(desktop, content=BEFORE)
        stored(user, settings)
        user.start()
        edit_by_keyboard(user)


def window_of_a_missing_monitor_can_be_used(desktop):
    """First a screen of two monitors side by side, then only the first one."""
    settings = desktop.folder / "kept-settings"
    width, height = desktop.size
    with Desktop(desktop.failures / "two-monitors", (2 * width, height)) as two:
        user = program.started(two, content=BEFORE, settings=settings)
        left = two.place(user.main, (600, 400), (width + 200, 150))
        user.end()
        user.start()
        two.wait_at(user.main, left)
        user.end()
    edit_by_keyboard(program.started(desktop, content=BEFORE, settings=settings))


scenario.run(window_can_be_used_at_every_stored_place, window_of_a_missing_monitor_can_be_used)
