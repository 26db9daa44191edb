#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Each dialog comes up where and as it was left, within a run and over restarts."""

import program
import scenario
from desktop import expect_equal, wait_for
from program import COMPOSER, FIND, PROPERTIES

CONTENT = b":QvVisaConfigurationFileVersion01\n:Provider=3674\nA=ASRL1::INSTR\n"
BENCH = "resource ASRL1::INSTR\n"
TABS_PLACE = (0, 0, 300, 50)  # the tab bar of the properties dialog


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


def each_keeps_its_place(desktop):
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


def find_and_properties_stay_maximised(desktop):
    user = started(desktop)
    for button, title in ("find", FIND), ("properties", PROPERTIES):
        leave_maximised(user, button, title)
    restart(user)
    for button, title in ("find", FIND), ("properties", PROPERTIES):
        window = open_dialog(user, button, title)
        wait_for(lambda: desktop.is_maximised(window), f"{title} to be maximised again")
        user.cancel(title)


def the_composer_does_not(desktop):
    user = started(desktop)
    leave_maximised(user, "add", COMPOSER)
    window = open_dialog(user, "add", COMPOSER)
    assert not desktop.is_maximised(window)
    user.cancel(COMPOSER)


def the_second_tab_comes_back_as_the_first(desktop):
    user = started(desktop)
    dialog = user.open_properties()
    first = desktop.picture(dialog, TABS_PLACE)
    desktop.key("Right")
    wait_for(lambda: desktop.picture(dialog, TABS_PLACE) != first, "the second tab")
    user.cancel(PROPERTIES)
    dialog = user.open_properties()
    wait_for(lambda: desktop.picture(dialog, TABS_PLACE) == first, "the first tab")
    user.cancel(PROPERTIES)
    settings = (user.settings / "Quorvane/QvVisaConfigure.conf").read_text()
    expect_equal([line for line in settings.splitlines() if line.startswith("tabindex")],
                 ["tabindex=0"], "the tab that is kept")


scenario.run(each_keeps_its_place, find_and_properties_stay_maximised, the_composer_does_not,
             the_second_tab_comes_back_as_the_first)
