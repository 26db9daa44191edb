#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Searches from several threads of one client."""

import ctypes
import os
import re
import threading
import unittest

import lab

INVALID_OBJECT = 0xBFFF000E
LOG = "/run/finder.log"


class Library:
    def __init__(self):
        self.calls = ctypes.CDLL(os.environ["QVVISA_FINDER_LIBRARY"])

    def open(self):
        manager = ctypes.c_uint32()
        self.calls.viOpenDefaultRM(ctypes.byref(manager))
        return manager.value

    def search(self, manager):
        """The status of viFindRsrc, and the count."""
        found, count = ctypes.c_uint32(), ctypes.c_uint32()
        text = ctypes.create_string_buffer(256)
        status = self.calls.viFindRsrc(manager, b"?*", ctypes.byref(found), ctypes.byref(count), text)
        return status & 0xFFFFFFFF, count.value

    def close(self, session):
        return self.calls.viClose(session) & 0xFFFFFFFF


class Threads(unittest.TestCase):
    def setUp(self):
        self.peer = lab.Peer()
        self.addCleanup(self.peer.remove)
        self.peer.instruments({"address": "198.51.100.2", "vxi11": 1024})
        self.library = Library()
        open(LOG, "w", encoding="ascii").close()
        self.results = {}
        self.threads = []

    def log(self):
        with open(LOG, encoding="ascii") as file:
            return file.read()

    def start(self, manager):
        def run():
            self.results[manager] = self.library.search(manager)

        self.threads.append(threading.Thread(target=run))
        self.threads[-1].start()

    def join(self):
        for thread in self.threads:
            thread.join()

    def test_searches_at_the_same_time_are_each_complete(self):
        managers = [self.library.open() for _ in range(4)]
        for manager in managers:
            self.start(manager)
        self.join()
        self.assertEqual(self.results, {manager: (0, 1) for manager in managers})

    def test_closing_one_manager_ends_its_search_early_and_no_other(self):
        closed, kept = self.library.open(), self.library.open()
        self.start(kept)
        self.start(closed)
        lab.wait_for(lambda: self.log().count("search for") == 2, "both searches")
        self.assertEqual(self.library.close(closed), 0)
        self.join()
        self.assertEqual(self.results[closed][0], INVALID_OBJECT)
        self.assertEqual(self.results[kept], (0, 1))
        packets = sorted(int(number) for number in re.findall(r"with (\d+) packets", self.log()))
        self.assertLess(packets[0], packets[1], "the closed manager's search went on")

    def test_closing_another_manager_does_not_wait_for_a_search(self):
        searching, idle = self.library.open(), self.library.open()
        self.start(searching)
        lab.wait_for(lambda: "search for" in self.log(), "the search")
        self.assertEqual(self.library.close(idle), 0)
        self.assertNotIn(searching, self.results, "the close waited for the search")
        self.join()


if __name__ == "__main__":
    os.environ["QVFIND_LOG"] = LOG
    lab.enter()
    unittest.main(verbosity=2)
