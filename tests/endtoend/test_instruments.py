#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Instruments by the composer and by the search."""

import program
import scenario
from desktop import wait_for

HEADER = b":QvVisaConfigurationFileVersion01\n:Provider=3674\n"
BENCH = """
resource TCPIP0::192.168.10.21::inst0::INSTR
resource USB0::0x1234::0x5678::102764::INSTR
resource GPIB0::9::INSTR
"""
HISLIP = 1
IP, DEVICE, PORT = 2, 3, 4  # tab stops behind the interface type


def composed_added_and_found(desktop):
    user = program.from_environment(
        desktop, content=HEADER + b"GPIB0::12::INSTR\nASRL1::INSTR\n", bench=BENCH)
    user.start()
    user.wait_scanned()
    user.press("add")
    user.compose(HISLIP, "METER", {IP: "meter1.lab", PORT: "5000"})
    user.select(0)
    user.press("find")
    user.choose_found(1)
    user.save()
    user.wait_file(HEADER + b"TCPIP0::192.168.10.21::inst0::INSTR\nASRL1::INSTR\n"
                   b"METER=TCPIP0::meter1.lab::hislip0,5000::INSTR\n")
    user.close()
    user.wait_ended()


def an_edit_replaces_the_selected_row(desktop):
    user = program.from_environment(
        desktop, content=HEADER + b"GPIB0::12::INSTR\nDMM=ASRL1::INSTR\n", bench=BENCH)
    user.start()
    user.select(1)
    user.press("edit")
    user.compose(HISLIP, None, {IP: "10.0.0.7", DEVICE: "3"})
    user.save()
    user.wait_file(HEADER + b"GPIB0::12::INSTR\nDMM=TCPIP0::10.0.0.7::hislip3::INSTR\n")
    user.close()
    user.wait_ended()


def cancelled_dialogs_change_nothing(desktop):
    before = HEADER + b"GPIB0::12::INSTR\n"
    user = program.from_environment(desktop, content=before, bench=BENCH)
    user.start()
    user.wait_scanned()
    user.select(0)
    for button, title in (("add", program.COMPOSER), ("edit", program.COMPOSER),
                          ("find", program.FIND), ("properties", program.PROPERTIES)):
        user.press(button)
        user.cancel(title)
    assert not user.can_save()
    user.close()
    user.wait_ended()
    user.expect_file(before)


def every_interface_is_composed(desktop):
    user = program.from_environment(desktop, content=HEADER)
    user.start()
    # Fields by tab stops behind the interface type, which shows the fields that it needs.
    for interface, fields in ((0, {1: "1", 2: "10.0.0.1", 3: "2"}),
                              (1, {2: "10.0.0.2"}),
                              (2, {2: "10.0.0.3", 3: "4000"}),
                              (3, {1: "10.0.0.4"}),
                              (4, {2: "0x0AAD", 3: "0x0054", 4: "100042"}),
                              (5, {1: "12"})):
        user.press("add")
        user.compose(interface, None, fields)
    user.save()
    user.wait_file(HEADER + b"TCPIP1::10.0.0.1::inst2::INSTR\n"
                   b"TCPIP0::10.0.0.2::hislip0::INSTR\n"
                   b"TCPIP0::10.0.0.3::4000::SOCKET\n"
                   b"QVIB::10.0.0.4\n"
                   b"USB0::0x0AAD::0x0054::100042::INSTR\n"
                   b"ASRL12::INSTR\n")
    user.close()
    user.wait_ended()


def the_composer_searches_too(desktop):
    user = program.from_environment(desktop, content=HEADER, bench=BENCH)
    user.start()
    user.wait_scanned()
    user.press("add")
    composer = desktop.window(program.COMPOSER)
    desktop.key("Tab", "Tab", "space")
    user.double_click_found(0)
    wait_for(lambda: desktop.read(["xdotool", "getactivewindow"]).strip() == composer,
             "the composer to have the keyboard again")
    desktop.key("Return")
    user.wait_back(program.COMPOSER)
    user.save()
    user.wait_file(HEADER + b"GPIB0::9::INSTR\n")
    user.close()
    user.wait_ended()


def a_refresh_finds_what_came_later(desktop):
    user = program.from_environment(desktop, content=HEADER + b"A=ASRL1::INSTR\n", bench="")
    user.start()
    user.wait_scanned()
    user.bench_file.write_text(BENCH)
    user.select(0)
    user.press("find")
    desktop.window(program.FIND)
    desktop.key("Tab", "space", "shift+Tab")
    user.double_click_found(2)
    user.wait_back(program.FIND)
    user.save()
    user.wait_file(HEADER + b"A=USB0::0x1234::0x5678::102764::INSTR\n")
    user.close()
    user.wait_ended()


scenario.run(composed_added_and_found, an_edit_replaces_the_selected_row,
             cancelled_dialogs_change_nothing, every_interface_is_composed,
             the_composer_searches_too, a_refresh_finds_what_came_later)
