#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The properties dialog: a serial port's settings and the provider, to the file and back."""

import program
import scenario
from desktop import wait_for

BENCH = """
resource ASRL1::INSTR
resource ASRL3::INSTR
"""
BEFORE = b""":QvVisaConfigurationFileVersion01
:Provider=3674
:SerialProperty[DeviceNo=3].Parity=2
ASRL1::INSTR
"""
AFTER = b""":QvVisaConfigurationFileVersion01
:Provider=4086
:SerialProperty[DeviceNo=1].Baudrate=9600
:SerialProperty[DeviceNo=1].DataBits=5
:SerialProperty[DeviceNo=1].StopBits=0
:SerialProperty[DeviceNo=1].Parity=0
:SerialProperty[DeviceNo=1].FlowControl=0
:SerialProperty[DeviceNo=3].Baudrate=115200
:SerialProperty[DeviceNo=3].DataBits=8
:SerialProperty[DeviceNo=3].StopBits=0
:SerialProperty[DeviceNo=3].Parity=2
:SerialProperty[DeviceNo=3].FlowControl=2
ASRL1::INSTR
"""
SETTINGS_PLACE = (340, 40, 340, 240)  # the group of the port's settings in the dialog


def set_ports(desktop):
    """From the tab bar: port 1, 5 data bits; port 3, 115200 baud, RTS/CTS; and back to the tab
    bar."""
    desktop.key("Tab", "Tab", "Tab", "Home")
    desktop.key("shift+Tab", "shift+Tab", "End")
    desktop.key("Tab", "End", "Up", "Up", "Up")
    desktop.key("Tab", "Tab", "Tab", "Tab", "Home", "Down", "Down")
    desktop.key(*["shift+Tab"] * 6)


def a_port_and_the_provider(desktop):
    user = program.from_environment(desktop, content=BEFORE, bench=BENCH)
    user.start()
    dialog = user.open_properties()
    unset = desktop.picture(dialog, SETTINGS_PLACE)
    set_ports(desktop)
    wait_for(lambda: desktop.picture(dialog, SETTINGS_PLACE) != unset, "the settings to change")
    desktop.key("Right", "Tab")
    desktop.retype("4086")
    user.accept_properties()
    user.save()
    user.wait_file(AFTER)
    user.close()
    user.wait_ended()

    user.start()
    user.open_properties()
    # What the dialog shows is what it gives back, so OK leaves nothing to save.
    desktop.key("Tab", "End")
    user.accept_properties()
    assert not user.can_save()
    user.close()
    user.wait_ended()
    user.expect_file(AFTER)


scenario.run(a_port_and_the_provider)
