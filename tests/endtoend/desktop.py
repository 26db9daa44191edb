# SPDX-License-Identifier: MIT
"""A private X display with a window manager, and the program on it, driven as a user drives it:
mouse, keyboard and what can be seen from outside. Nothing here waits for a time; everything waits
for a condition and gives up at a deadline.
"""

import ctypes
import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile
import time

DEADLINE_SECONDS = float(os.environ.get("QVVISA_DEADLINE_SECONDS", "60"))
SOURCES = pathlib.Path(__file__).resolve().parents[2]

FONT_SETTINGS = """<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <dir>/usr/share/fonts/truetype/dejavu</dir>
  <cachedir>{cache}</cachedir>
  <match target="pattern">
    <edit name="family" mode="prepend_first" binding="strong"><string>DejaVu Sans</string></edit>
  </match>
</fontconfig>
"""


class Failure(AssertionError):
    """Something seen from outside is not as it has to be."""


def wait_for(condition, what):
    """Polls condition() until it gives something true, which is returned.

    what: text, or a call that makes the text, for the failure at the deadline."""
    deadline = time.monotonic() + DEADLINE_SECONDS
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > deadline:
            raise Failure("waited in vain for " + (what() if callable(what) else what))
        time.sleep(0.02)


def expect_equal(seen, expected, what):
    if seen != expected:
        raise Failure(f"{what}:\nexpected {expected!r}\nseen     {seen!r}")


def _die_with_parent():
    pr_set_pdeathsig = 1
    ctypes.CDLL(None).prctl(pr_set_pdeathsig, signal.SIGKILL)


class Desktop:
    """Xvfb and openbox of its own; a context manager.

    folder: a scratch folder for everything that runs here, removed at the end.
    failures: where a screenshot goes when the with block is left by an exception, or None.
    size: of the screen. dots: an inch, as a desktop's scaling sets it: 96 is 100 %. theme: text of
    an openbox theme for the frames, which then have a title and no buttons."""

    def __init__(self, failures=None, size=(1280, 900), dots=96, theme=None):
        self.failures = failures
        self.size = size
        self.dots = dots
        self._theme = theme
        self._processes = []
        self._last_click = None
        self.folder = None
        self.display = None

    def __enter__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="qvvisa-desktop-"))
        try:
            self._start_display()
            self.read(["xprop", "-root", "-format", "RESOURCE_MANAGER", "8s", "-set",
                       "RESOURCE_MANAGER", f"Xft.dpi:\t{self.dots}\n"])
            self._start_window_manager()
        except BaseException:
            self._end()
            raise
        return self

    def __exit__(self, kind, error, trace):
        try:
            if error is not None and self.failures is not None:
                self.failures.mkdir(parents=True, exist_ok=True)
                self.screenshot(self.failures / "failure.png")
        finally:
            self._end()

    def _start_display(self):
        reading, writing = os.pipe()
        width, height = self.size
        self.start(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{width}x{height}x24",
             # No key repeats itself, however late a busy machine lets go of it.
             "-nolisten", "tcp", "-noreset", "-r"],
            environment(self.folder), pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise Failure("Xvfb did not start: " + self.output_of("Xvfb"))
        self.display = f":{number}"

    def _start_window_manager(self):
        settings = SOURCES / "tests/endtoend/openbox.xml"
        if self._theme is not None:
            theme = self.folder / ".themes/Plain/openbox-3/themerc"
            theme.parent.mkdir(parents=True)
            theme.write_text(self._theme)
            plain = settings.read_text().replace("Clearlooks", "Plain").replace("NLIMC", "L")
            settings = self.folder / "openbox.xml"
            settings.write_text(plain)
        self.start(["openbox", "--sm-disable", "--config-file", str(settings)],
                   self.environment())
        # It says that it is there before it says what room a panel takes.
        wait_for(lambda: "window id" in self.read(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"])
                 and self.free_size()[1] < self.size[1], "the window manager")

    def _end(self):
        for process in reversed(self._processes):
            if process.poll() is None:
                process.kill()
            process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def environment(self):
        """What a process on this display gets: nothing of the caller's but what it must have."""
        return environment(self.folder, self.display)

    def start(self, command, its_environment, log=None, **options):
        """Starts a process that does not outlive the desktop. Its output goes to a file, named log
        or after the command."""
        path = self.folder / ((log or pathlib.Path(command[0]).name) + ".log")
        with open(path, "ab") as output:
            process = subprocess.Popen(
                command, env=its_environment, stdin=subprocess.DEVNULL, stdout=output,
                stderr=output, preexec_fn=_die_with_parent, **options)
        self._processes.append(process)
        return process

    def output_of(self, name):
        log = self.folder / (name + ".log")
        return log.read_text(errors="replace") if log.exists() else ""

    def read(self, command):
        """The standard output of a command on this display; empty when it fails."""
        done = subprocess.run(command, env=self.environment(), stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, check=False)
        return done.stdout if done.returncode == 0 else ""

    def xdotool(self, *words):
        command = ["xdotool", *[str(word) for word in words]]
        done = subprocess.run(command, env=self.environment(), stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise Failure(f"{' '.join(command)}: {done.stderr.strip()}")
        return done.stdout

    def screenshot(self, path, window="root", place=None):
        """Writes a picture of a window, or of place, WIDTHxHEIGHT+X+Y, in it."""
        cut = ["-crop", place, "+repage"] if place else []
        subprocess.run(["import", "-silent", "-window", str(window), *cut, "-strip", str(path)],
                       env=self.environment(), stdin=subprocess.DEVNULL, check=True)

    # Windows

    def windows(self, title):
        """The ids of the visible windows with this title."""
        return self.read(["xdotool", "search", "--onlyvisible", "--name",
                          f"^{re.escape(title)}$"]).split()

    def window(self, title):
        """Waits until the one window with this title has the keyboard; gives its id."""
        def found():
            ids = self.windows(title)
            if len(ids) == 1 and self.read(["xdotool", "getactivewindow"]).strip() == ids[0]:
                return ids[0]
            return None
        return wait_for(found, lambda: f"the window {title!r} to come up and be active; seen: "
                                       f"{self.titles()}")

    def wait_gone(self, title):
        wait_for(lambda: not self.windows(title), f"the window {title!r} to go")

    def titles(self):
        ids = self.read(["xdotool", "search", "--onlyvisible", "--name", "."]).split()
        return [self.read(["xdotool", "getwindowname", one]).strip() for one in ids]

    def geometry(self, window):
        """(x, y, width, height) of a window without its frame, on the screen."""
        text = self.read(["xwininfo", "-id", window])
        numbers = []
        for key in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"):
            match = re.search(rf"{key}:\s*(-?\d+)", text)
            if match is None:
                return None
            numbers.append(int(match.group(1)))
        return tuple(numbers)

    def frame(self, window):
        """(left, right, top, bottom) widths of the window manager's frame."""
        text = self.read(["xprop", "-id", window, "_NET_FRAME_EXTENTS"])
        return tuple(int(number) for number in re.findall(r"\d+", text.partition("=")[2]))

    def free_size(self):
        """(width, height) of what the window manager keeps free of panels, from the upper left;
        the whole screen as long as it has not said so."""
        text = self.read(["xprop", "-root", "_NET_WORKAREA"]).partition("=")[2]
        numbers = tuple(int(number) for number in re.findall(r"\d+", text))
        if not numbers:
            return self.size
        expect_equal(numbers[:2], (0, 0), "corner of the free area")
        return numbers[2:4]

    def place(self, window, size, corner):
        """Resizes and moves a window; gives its geometry() when it is there.

        corner: of the frame or of the inside, as the window's hints have it."""
        left, _, top, _ = self.frame(window)
        self.xdotool("windowsize", window, *size)
        self.xdotool("windowmove", window, *corner)

        def placed():
            x, y, *seen_size = self.geometry(window)
            is_there = x - corner[0] in (0, left) and y - corner[1] in (0, top)
            return (x, y, *seen_size) if is_there and tuple(seen_size) == tuple(size) else None
        return wait_for(placed, lambda: f"a window of {size} at {corner}; it is at "
                                        f"{self.geometry(window)}")

    def wait_at(self, window, geometry):
        """Waits until a window has this geometry()."""
        wait_for(lambda: self.geometry(window) == geometry,
                 lambda: f"the window at {geometry}; it is at {self.geometry(window)}")

    def wait_maximised(self, window, expected=True):
        wait_for(lambda: self.is_maximised(window) == expected,
                 "the window to be " + ("maximised" if expected else "normal"))

    def is_maximised(self, window):
        return "_NET_WM_STATE_MAXIMIZED_VERT" in self.read(
            ["xprop", "-id", window, "_NET_WM_STATE"])

    def popup(self):
        """Waits for a menu; gives its id."""
        return wait_for(lambda: next(iter(self.popups()), None), "a menu")

    def popups(self):
        ids = self.read(["xdotool", "search", "--onlyvisible", "--class", "."]).split()
        return [one for one in ids if "_NET_WM_WINDOW_TYPE_POPUP_MENU" in
                self.read(["xprop", "-id", one, "_NET_WM_WINDOW_TYPE"])]

    def wait_no_popup(self):
        wait_for(lambda: not self.popups(), "the menu to go")

    def colours(self, window, place):
        """The set of (red, green, blue) in place = (x, y, width, height) of a window."""
        pixels = self.picture(window, place)
        return {tuple(pixels[at:at + 3]) for at in range(0, len(pixels), 3)}

    def picture(self, window, place):
        """The bytes red, green, blue of each pixel in place = (x, y, width, height) of a window."""
        x, y, width, height = place
        done = subprocess.run(
            ["import", "-silent", "-window", window, "-crop", f"{width}x{height}+{x}+{y}",
             "-depth", "8", "rgb:-"],
            env=self.environment(), stdin=subprocess.DEVNULL, capture_output=True, check=True)
        return done.stdout

    # Hands

    def click(self, window, point, button=1, times=1):
        """Clicks at point = (x, y) from the window's upper left corner.

        Never twice at the same place: two calls must not add up to a double click."""
        x, y = point
        if (window, point) == self._last_click:
            x += 10
        self._last_click = (window, (x, y))
        self.xdotool("mousemove", "--window", window, x, y, "click", "--repeat", times,
                     "--delay", 10, button)

    def key(self, *keys):
        self.xdotool("key", *keys)

    def type(self, text):
        self.xdotool("type", "--delay", 4, text)

    def retype(self, text):
        """Replaces the text of the line edit that has the focus."""
        self.key("ctrl+a")
        self.type(text)


def environment(folder, display=None):
    """A small environment with a home under folder."""
    runtime = folder / "runtime"
    fonts = folder / "fonts.conf"
    if not fonts.exists():
        runtime.mkdir(mode=0o700)
        fonts.write_text(FONT_SETTINGS.format(cache=folder / "fontcache"))
    result = {
        "PATH": os.environ.get("PATH", "/usr/bin:/bin"),
        "LANG": "C.UTF-8",
        "HOME": str(folder),
        "FONTCONFIG_FILE": str(fonts),
        "XDG_RUNTIME_DIR": str(runtime),
        "QT_QPA_PLATFORM": "xcb",
        "QT_STYLE_OVERRIDE": "Fusion",
        "QT_SCALE_FACTOR": "1",
    }
    if display is not None:
        result["DISPLAY"] = display
    for name, value in os.environ.items():
        if name.endswith("SAN_OPTIONS"):
            result[name] = value
    return result
