#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The window comes up in the middle the first time and where it was left every other time."""

import program
import scenario
from desktop import expect_equal, wait_for

CONTENT = b":QvVisaConfigurationFileVersion01\n:Provider=3674\nA=ASRL1::INSTR\n"


def the_first_time_in_the_middle(desktop):
    user = program.from_environment(desktop, content=CONTENT)
    user.start()
    x, y, width, height = desktop.geometry(user.main)
    left, right, top, bottom = desktop.frame(user.main)
    expect_equal((width, height), (600, 400), "size")
    free_width, free_height = desktop.free_size()
    assert free_height < desktop.size[1]
    # In the middle with its frame or without it: that is the window manager's to say.
    assert abs(2 * x + width - free_width) <= 2 * (left + right), (x, y)
    assert abs(2 * y + height - free_height) <= 2 * (top + bottom), (x, y)
    assert not desktop.is_maximised(user.main)


def moved_and_resized(desktop):
    user = program.from_environment(desktop, content=CONTENT)
    user.start()
    left = desktop.place(user.main, (720, 333), (111, 222))
    user.close()
    user.wait_ended()
    user.start()
    wait_for(lambda: desktop.geometry(user.main) == left,
             lambda: f"the window at {left}; it is at {desktop.geometry(user.main)}")


def maximised(desktop):
    user = program.from_environment(desktop, content=CONTENT)
    user.start()
    desktop.key("alt+F10")
    wait_for(lambda: desktop.is_maximised(user.main), "the window to be maximised")
    user.close()
    user.wait_ended()
    user.start()
    wait_for(lambda: desktop.is_maximised(user.main), "the window to be maximised again")
    desktop.key("alt+F10")
    wait_for(lambda: not desktop.is_maximised(user.main), "the window to be normal")
    user.close()
    user.wait_ended()
    user.start()
    assert not desktop.is_maximised(user.main)


scenario.run(the_first_time_in_the_middle, moved_and_resized, maximised)
