# SPDX-License-Identifier: MIT
"""The built program as its user meets it: where its buttons and rows are, and what it wrote."""

import os
import pathlib
import re

from desktop import SOURCES, Failure, expect_equal, wait_for

# From the only place that names it.
VERSION = re.search(r"project\([^)]*\bVERSION ([0-9.]+)", (SOURCES / "CMakeLists.txt").read_text())[1]
MAIN = f"QvVisaConfigure - {VERSION}"
UNSAVED = "Unsaved data"
COMPOSER = "VISA Resource String Composer"
FIND = "Find resources"
PROPERTIES = "QvVisa Properties"

HEADER = b":QvVisaConfigurationFileVersion01\n:Provider=3674\n"
# A file with one alias, and the file after Program.edit().
BEFORE = HEADER + b"A=ASRL1::INSTR\n"
EDITED = HEADER + b"B=ASRL1::INSTR\n"

# The main window in the Fusion style with DejaVu Sans at 96 dots an inch, as Desktop starts it.
TOOL_BAR_Y = 20
TOOL_BAR_X = {"add": 29, "remove": 63, "edit": 97, "find": 131, "properties": 172, "save": 213,
              "close": 247}
RED_TOOLS = {"remove", "close"}
FIRST_ROW_Y = 85
ROW_HEIGHT = 30
COLUMN_X = {"resource": 40, "alias": 560}
SELECTION = (48, 140, 198)

# The find dialog's list likewise.
FOUND_X = 40
FOUND_FIRST_Y = 20
FOUND_HEIGHT = 17


def own_words(output):
    """The lines of a program's output but those that the toolkit writes when a window goes while it
    looks at it, and means nothing by."""
    return [line for line in output.splitlines()
            if not line.startswith("qt.qpa.xcb: QXcbConnection: XCB error: 3 (BadWindow)")]


class Program:
    """One user's program: a home, a working folder, settings and a configuration file of its own,
    kept over any number of starts.

    executable: the built program. libraries: where the loader looks for a VISA library before it
    looks where the system says, LD_LIBRARY_PATH; empty for nowhere. content: the bytes of the
    configuration file that QVVISACONFFILE names, or None to leave the file as it is. bench: what
    the simulator reports. file, settings: where those are kept when not in the desktop's own
    folder. With neither file nor content there is no configuration file, and the variable is not
    set. around: a command that starts the program, which is appended to it. environment: more
    variables of the program."""

    def __init__(self, desktop, executable, libraries="", content=None, bench="", file=None,
                 settings=None, around=(), environment=None):
        self.desktop = desktop
        self._executable = pathlib.Path(executable)
        self._around = list(around)
        self.home = desktop.folder / "home"
        self.working_folder = desktop.folder / "work"
        self.settings = settings or desktop.folder / "settings"
        self.file = file or desktop.folder / "visa.conf"
        for folder in (self.home, self.working_folder, self.settings):
            folder.mkdir(exist_ok=True)
        self._environment = desktop.environment()
        self._environment.update(HOME=str(self.home), XDG_CONFIG_HOME=str(self.settings))
        if content is not None:
            self.file.write_bytes(content)
        if content is not None or file is not None:
            self._environment["QVVISACONFFILE"] = str(self.file)
        self.bench_file = desktop.folder / "bench.txt"
        self.bench_file.write_text(bench)
        self._calls = desktop.folder / "calls.txt"
        self._environment.update(QVVISA_BENCH=str(self.bench_file),
                                 QVVISA_BENCH_LOG=str(self._calls))
        if libraries:
            self._environment["LD_LIBRARY_PATH"] = libraries
        self._environment.update(environment or {})
        self._process = None
        self.main = None

    def start(self):
        """Starts the program and waits for its main window."""
        self._calls.write_text("")
        self._process = self.desktop.start([*self._around, str(self._executable)],
                                           self._environment, log=self._executable.name,
                                           cwd=self.working_folder)
        self.main = self.desktop.window(MAIN)

    def wait_scanned(self):
        """Waits until the search of the start-up is over, as the simulator logs it."""
        wait_for(lambda: "viClose(1) -> VI_SUCCESS\n" in self.calls(),
                 "the search for instruments to end")

    def wait_ended(self):
        """Waits until the program has ended by itself, with exit code 0 and without output."""
        wait_for(lambda: self._process.poll() is not None, "the program to end")
        words = own_words(self.desktop.output_of(self._executable.name))
        expect_equal((self._process.returncode, words), (0, []),
                     "exit code and output of the program")

    def calls(self):
        """The calls to the simulator since the start, as it logs them."""
        return self._calls.read_text()

    def end_by(self, number):
        """Sends the program a signal, which must be what ends it."""
        self._process.send_signal(number)
        expect_equal(self._process.wait(60), -number, "what ended the program")

    def is_running(self):
        return self._process.poll() is None

    def close(self):
        """Closes the main window by the window manager."""
        self.desktop.key("alt+F4")

    def end(self):
        """Closes the main window, which has nothing to save, and waits until the program ends."""
        self.close()
        self.wait_ended()

    def answer_unsaved(self, key):
        """Answers the question about unsaved changes and waits until the program ends."""
        self.desktop.window(UNSAVED)
        self.desktop.key(key)
        self.wait_ended()

    # The main window

    def press(self, button):
        """Clicks a button of the tool bar."""
        self.desktop.click(self.main, (TOOL_BAR_X[button], TOOL_BAR_Y))

    def cell(self, row, column="resource"):
        return (COLUMN_X[column], FIRST_ROW_Y + row * ROW_HEIGHT)

    def select(self, row):
        self.desktop.click(self.main, self.cell(row))

    def select_by_keyboard(self, colour=SELECTION):
        """Presses Down until a row is selected, whatever the scale; there must be two rows.

        colour: of a selected row."""
        def is_selected():
            # The first keys are lost if the window has not got the focus yet.
            self.desktop.key("Down")
            _, _, width, height = self.desktop.geometry(self.main)
            return colour in self.desktop.colours(self.main, (0, 0, width, height))
        wait_for(is_selected, "a row to be selected")

    def edit_cell(self, row, column, text):
        """Double click, type, Return."""
        self.desktop.click(self.main, self.cell(row, column), times=2)
        self.desktop.retype(text)
        self.desktop.key("Return")

    def edit(self):
        """Makes EDITED of BEFORE in the table."""
        self.edit_cell(0, "alias", "B")
        self.wait_can_save()

    def can_save(self):
        """Whether the tool bar's Save is enabled: a disabled button has no colour."""
        colours = wait_for(self._painted_tools, "the tool bar to be painted")
        return any(max(colour) - min(colour) > 60 for colour in colours["save"])

    def _painted_tools(self):
        """The colours of each button of the tool bar. None while something else that has just gone
        is still to be seen in their place: two of the buttons are red, with something between."""
        width, height = max(TOOL_BAR_X.values()) + 10, 20
        pixels = self.desktop.picture(self.main, (0, TOOL_BAR_Y - 10, width, height))
        colours = {
            name: {tuple(pixels[at:at + 3]) for row in range(height)
                   for at in range((row * width + x - 10) * 3, (row * width + x + 10) * 3, 3)}
            for name, x in TOOL_BAR_X.items()}

        def is_red(name):
            return any(red > 200 and max(green, blue) < 140 for red, green, blue in colours[name])
        reds = {name for name in TOOL_BAR_X if is_red(name)}
        return colours if RED_TOOLS <= reds and "add" not in reds else None

    def wait_can_save(self):
        wait_for(self.can_save, "Save to be enabled")

    def save(self):
        """Presses Save as soon as there is something to save, and waits until it is done."""
        self.wait_can_save()
        self.press("save")
        wait_for(lambda: not self.can_save(), "Save to be done")

    def menu(self, point):
        """Right click in the main window; gives the context menu's id."""
        self.desktop.click(self.main, point, button=3)
        return self.desktop.popup()

    def choose(self, entry):
        """Takes the entry at a place, from 1, of the open menu by the keyboard."""
        self.desktop.key(*["Down"] * entry, "Return")

    # The dialogs, by the keyboard, as their tab order leads

    def wait_back(self, title):
        """Waits until a dialog has gone and the main window has the keyboard again."""
        self.desktop.wait_gone(title)
        self.desktop.window(MAIN)

    def cancel(self, title):
        """Waits for a dialog and cancels it."""
        self.desktop.window(title)
        self.desktop.key("Escape")
        self.wait_back(title)

    def compose(self, interface, alias, fields):
        """Fills the composer that has been opened and answers OK.

        interface: place in the list of interface types, from 0. alias: None to leave it. fields:
        texts by their number of tab stops after the interface type."""
        self.desktop.window(COMPOSER)
        if alias is not None:
            self.desktop.retype(alias)
        self.desktop.key(*["Tab"] * 3, "Home", *["Down"] * interface)
        at = 0
        for stop, text in sorted(fields.items()):
            self.desktop.key(*["Tab"] * (stop - at))
            self.desktop.retype(text)
            at = stop
        self.desktop.key("Return")
        self.wait_back(COMPOSER)

    def choose_found(self, place):
        """Takes the resource at a place, from 0, in the find dialog that has been opened."""
        self.desktop.window(FIND)
        self.desktop.key("Home", *["Down"] * place, "Return")
        self.wait_back(FIND)

    def double_click_found(self, place):
        """The same by the mouse, once the resource is listed; does not wait for the main window."""
        window = self.desktop.window(FIND)
        point = (FOUND_X, FOUND_FIRST_Y + place * FOUND_HEIGHT)
        row = (point[0] - 8, point[1] - 6, 100, 12)
        wait_for(lambda: len(self.desktop.colours(window, row)) > 1,
                 f"an entry at place {place} of the list")
        self.desktop.click(window, point, times=2)
        self.desktop.wait_gone(FIND)

    def open_properties(self):
        """Opens the properties dialog; its tab bar has the keyboard."""
        self.press("properties")
        return self.desktop.window(PROPERTIES)

    def accept_properties(self):
        self.desktop.key("Return")
        self.wait_back(PROPERTIES)

    # The file

    def write_in_home(self, content):
        """Writes the configuration file of the home folder; gives its path."""
        file = self.home / ".quorvane/visa.conf"
        file.parent.mkdir()
        file.write_bytes(content)
        return file

    def wait_file(self, expected):
        """Waits until the configuration file holds exactly these bytes."""
        wait_for(lambda: self.file.read_bytes() == expected,
                 lambda: f"the file to become\n{expected!r}\nit is\n{self.file.read_bytes()!r}")

    def expect_file(self, expected):
        expect_equal(self.file.read_bytes(), expected, str(self.file))

    def files(self):
        """Every file of this user but the window settings, as paths."""
        return sorted(path for folder in (self.home, self.working_folder)
                      for path in folder.rglob("*") if path.is_file())


def from_environment(desktop, **options):
    """The program that the build says is under test."""
    missing = [name for name in ("QVVISA_PROGRAM", "QVVISA_SIMULATOR") if name not in os.environ]
    if missing:
        raise Failure(f"not set: {', '.join(missing)}")
    options.setdefault("libraries", os.environ["QVVISA_SIMULATOR"])
    return Program(desktop, os.environ["QVVISA_PROGRAM"], **options)


def started(desktop, **options):
    """The same, started; its search is over if it has a bench."""
    user = from_environment(desktop, **options)
    user.start()
    if "bench" in options:
        user.wait_scanned()
    return user
