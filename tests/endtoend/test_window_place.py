#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The main window opens centred at first, then with its last size, position and state."""

import program
import scenario
from desktop import expect_equal, wait_for

CONTENT = b":QvVisaConfigurationFileVersion01\n:Provider=3674\nA=ASRL1::INSTR\n"


def first_start_centres_the_window(desktop):
    user = program.from_environment(desktop, content=CONTENT)
    user.start()
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
    user = program.from_environment(desktop, content=CONTENT)
    user.start()
    left = desktop.place(user.main, (720, 333), (111, 222))
    user.close()
    user.wait_ended()
    user.start()
    wait_for(lambda: desktop.geometry(user.main) == left,
             lambda: f"the window at {left}; it is at {desktop.geometry(user.main)}")


def maximised_state_is_restored(desktop):
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


scenario.run(first_start_centres_the_window, size_and_position_are_restored,
             maximised_state_is_restored)
