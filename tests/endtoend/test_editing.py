#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""An edit and a removal, from the cell to the file."""

import program
import scenario

BEFORE = b""":QvVisaConfigurationFileVersion01 written by hand
# The rack.
:provider = 4711
:GPIBProperty[DeviceNo= 0 ].PrimaryAddress= 7
:SerialProperty[DeviceNo=3].Parity=2
:SerialProperty[DeviceNo=1].Baudrate=19200
:Unknown=1

GPIB0::12::INSTR
ASRL1::INSTR
dmm = TCPIP0::10.0.0.5::inst0::INSTR
"""


def edit_and_removal_are_saved(desktop):
    user = program.from_environment(desktop, content=BEFORE)
    user.start()
    assert not user.can_save()
    user.edit_cell(2, "alias", " my dmm:2# ")
    user.wait_can_save()
    user.edit_cell(0, "resource", "GPIB0::13::INSTR")
    user.select(1)
    user.press("remove")
    user.expect_file(BEFORE)
    user.save()
    user.wait_file(b""":QvVisaConfigurationFileVersion01
:Provider=4711
:SerialProperty[DeviceNo=1].Baudrate=19200
:SerialProperty[DeviceNo=1].DataBits=8
:SerialProperty[DeviceNo=1].StopBits=0
:SerialProperty[DeviceNo=1].Parity=0
:SerialProperty[DeviceNo=1].FlowControl=0
:SerialProperty[DeviceNo=3].Baudrate=9600
:SerialProperty[DeviceNo=3].DataBits=8
:SerialProperty[DeviceNo=3].StopBits=0
:SerialProperty[DeviceNo=3].Parity=2
:SerialProperty[DeviceNo=3].FlowControl=0
GPIB0::13::INSTR
my_dmm2=TCPIP0::10.0.0.5::inst0::INSTR
""")
    user.press("close")
    user.wait_ended()


scenario.run(edit_and_removal_are_saved)
