"""Drives the real program in a real window: starts it on a fresh shop, finds controls by the names that the program gives
them, presses, types and reads as an operator would.

The program is found and read over the accessibility bus; real keys and the real mouse come from xdotool. Needs a session
bus of its own: `dbus-run-session -- python3 TEST`. What is tested stands in the environment:
  ZRT_PROGRAM  the program, built for the tests' server       ZRT_DEMO  the maker of the demonstration shop
  ZRT_HOST     address of the tests' server                   ODBCSYSINI  the driver's registration
"""

import os
import subprocess
import tempfile
import time

import pyatspi

CLIENT = ["mariadb", "--no-defaults", "--user=zrt", "--password=41730926", "--default-character-set=latin1"]
ROLES_WITHOUT_CONTROLS = {pyatspi.ROLE_TABLE, pyatspi.ROLE_TREE, pyatspi.ROLE_LIST, pyatspi.ROLE_TREE_TABLE}
TIMEOUT = 15.0


def wait_for(what, look):
    """The first value of look() that is true; fails after a while, naming `what` was waited for."""
    end = time.monotonic() + TIMEOUT
    while True:
        try:
            found = look()
        except Exception as error:  # the bus reports what is just going away in many ways
            found, failure = None, error
        else:
            failure = None
        if found:
            return found
        if time.monotonic() > end:
            raise AssertionError(f"{what}: not after {TIMEOUT} s" + (f" ({failure})" if failure else ""))
        time.sleep(0.02)


def xdotool(*arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True)


def extents(accessible):
    """Place and size on the screen."""
    return accessible.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)


class Shop:
    """The database that the program opens."""

    def __init__(self, *options):
        self.client = [*CLIENT, f"--host={os.environ['ZRT_HOST']}"]
        self.run("DROP DATABASE IF EXISTS zrt")
        if options == ("none",):
            return
        self.run("CREATE DATABASE zrt DEFAULT CHARACTER SET latin1 COLLATE latin1_bin")
        script = subprocess.run([os.environ["ZRT_DEMO"], *options], check=True, capture_output=True).stdout
        subprocess.run([*self.client, "zrt"], input=script, check=True)

    def run(self, statement, schema=None):
        arguments = [*self.client, "--batch", "--skip-column-names", "-e", statement.encode("cp1251")]
        answer = subprocess.run(arguments + ([schema] if schema else []), check=True, capture_output=True).stdout
        return [line.split("\t") for line in answer.decode("cp1251").splitlines()]

    def ask(self, statement):
        return self.run(statement, "zrt")


class Program:
    """The running program. `with Program() as program:` ends it whatever happens."""

    def __init__(self, settings=None):
        """`settings`: folder of the user's settings, where they are to outlive the program."""
        self.home = tempfile.TemporaryDirectory(prefix="zrt-window-")
        self.drives = os.path.join(self.home.name, "zrt", "drives")
        self.process = subprocess.Popen(
            [os.environ["ZRT_PROGRAM"]],
            env={**os.environ, "XDG_DATA_HOME": self.home.name, "XDG_CONFIG_HOME": settings or self.home.name,
                 "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"},
        )

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if not self.has_ended():
            self.process.kill()
        self.process.wait()
        self.home.cleanup()

    def has_ended(self):
        return self.process.poll() is not None

    def exit_code(self):
        return self.process.wait(TIMEOUT)

    # Windows

    def windows(self):
        if self.has_ended():
            raise AssertionError(f"the program has ended with code {self.process.returncode}")
        for application in pyatspi.Registry.getDesktop(0):
            if application is not None and application.get_process_id() == self.process.pid:
                return [window for window in application if window is not None]
        return []

    def visible(self, window):
        return window.getState().contains(pyatspi.STATE_SHOWING)

    def is_open(self, name):
        return any(w.description == name and self.visible(w) for w in self.windows())

    def wait_gone(self, name):
        wait_for(f"{name} gone", lambda: not self.is_open(name))

    def form(self, name):
        """The window of a form, waited for."""
        return Form(self, wait_for(f"window {name}", lambda: next(
            (w for w in self.windows() if w.description == name and self.visible(w)), None)))

    def box(self):
        """The message or input box that is open, waited for."""
        def look():
            roles = (pyatspi.ROLE_ALERT, pyatspi.ROLE_DIALOG)
            return next((w for w in self.windows() if w.getRole() in roles and self.visible(w)), None)

        return Box(self, wait_for("a box", look))

    def answer(self, text, button="OK", entry=None):
        """The box that is open must say `text`; enters `entry` if one is given and presses `button`."""
        box = self.box()
        if box.text != text:
            raise AssertionError(f"the box says {box.text!r}, not {text!r}")
        if entry is not None:
            box.enter(entry)
        box.press(button)

    # The operator's hands

    def key(self, *names):
        xdotool("key", "--clearmodifiers", *names)

    def type(self, text):
        xdotool("type", "--clearmodifiers", text)


class Window:
    def __init__(self, program, accessible):
        self.program = program
        self.accessible = accessible

    @property
    def title(self):
        return self.accessible.name

    def all(self, accessible=None):
        """All parts of the window but those of grids, which hold more than can be asked for one by one."""
        accessible = accessible or self.accessible
        for child in accessible:
            if child is None:
                continue
            yield child
            if child.getRole() not in ROLES_WITHOUT_CONTROLS:
                yield from self.all(child)

    def focus(self):
        """The part that has the keyboard, waited for."""
        return wait_for("the keyboard somewhere", lambda: next(
            (part for part in self.all() if part.getState().contains(pyatspi.STATE_FOCUSED)), None))

    def close(self):
        """As by the system's box."""
        self.key("alt+F4")

    def activate(self):
        """Waits until the window is in front, and returns it."""
        wait_for(f"{self.title} in front", lambda: self.accessible.getState().contains(pyatspi.STATE_ACTIVE))
        return self

    def key(self, *names):
        self.activate().program.key(*names)


class Form(Window):
    """The window of a form; its controls are named as in the program, items of a control array NAME_index."""

    def __init__(self, program, accessible):
        super().__init__(program, accessible)
        self.found = {}

    def control(self, name):
        if name not in self.found:
            # The toolkit gives its strips of tabs no description; a window has one at most.
            strip = name.startswith("TabStrip")
            self.found[name] = wait_for(f"control {name}", lambda: next(
                (part for part in self.all()
                 if part.description == name or strip and part.getRole() == pyatspi.ROLE_PAGE_TAB_LIST), None))
        return self.found[name]

    def is_shown(self, name):
        return self.control(name).getState().contains(pyatspi.STATE_SHOWING)

    def is_enabled(self, name):
        return self.control(name).getState().contains(pyatspi.STATE_ENABLED)

    def has_focus(self, name):
        return self.control(name).getState().contains(pyatspi.STATE_FOCUSED)

    def wait_for_focus(self, name):
        wait_for(f"the keyboard in {name}", lambda: self.has_focus(name))

    def walk_to(self, name, key="Tab"):
        """By Tab from wherever the keyboard is."""
        for _ in range(80):
            if self.has_focus(name):
                return
            self.program.key(key)
            self.focus()
        raise AssertionError(f"{key} never comes to {name}")

    def caption(self, name):
        return self.control(name).name

    def text(self, name):
        return self.control(name).queryText().getText(0, -1)

    def set_text(self, name, text):
        self.control(name).queryEditableText().setTextContents(text)

    def press(self, name):
        self.control(name).queryAction().doAction(0)

    def middle(self, name):
        box = extents(self.control(name))
        return box.x + box.width // 2, box.y + box.height // 2

    def click(self, name):
        """With the real mouse, in the middle."""
        xdotool("mousemove", *self.middle(name), "click", 1)

    def drag(self, source, target):
        x, y = self.middle(source)
        to_x, to_y = self.middle(target)
        xdotool("mousemove", x, y, "mousedown", 1)
        for step in range(1, 11):
            xdotool("mousemove", x + (to_x - x) * step // 10, y + (to_y - y) * step // 10)
            time.sleep(0.03)
        xdotool("mouseup", 1)

    def tab(self, caption):
        wait_for(f"tab {caption}", lambda: next(
            (part for part in self.control("TabStrip1") if part.name == caption), None)).queryAction().doAction(0)

    def tabs(self):
        return [part.name for part in self.control("TabStrip1") if part.getRole() == pyatspi.ROLE_PAGE_TAB]

    def menus(self):
        """Captions of the menus that can be seen in the bar."""
        bars = [part for part in self.all() if part.getRole() == pyatspi.ROLE_MENU_BAR]
        return [menu.name for bar in bars for menu in bar if menu.getState().contains(pyatspi.STATE_VISIBLE)]

    def menu(self, *captions):
        """Opens menus and chooses the last of the captions."""
        at = next(part for part in self.all() if part.getRole() == pyatspi.ROLE_MENU_BAR)
        for caption in captions:
            entry = wait_for(f"menu {caption}", lambda: next((part for part in self.all(at) if part.name == caption), None))
            entry.queryAction().doAction(0)
            at = entry

    # Grids: rows and columns from 0, as on the bus.

    def rows(self, grid):
        return self.control(grid).queryTable().nRows

    def headers(self, grid):
        table = self.control(grid).queryTable()
        return [table.getColumnDescription(column) for column in range(table.nColumns)]

    def cell(self, grid, row, header):
        table = self.control(grid).queryTable()
        return table.getAccessibleAt(row, self.headers(grid).index(header)).name

    def row(self, grid):
        """The selected row, -1 if there is none."""
        selected = self.control(grid).queryTable().getSelectedRows()
        return selected[0] if selected else -1


class Box(Window):
    @property
    def text(self):
        return next(part.name for part in self.all() if part.getRole() == pyatspi.ROLE_LABEL and part.name)

    def buttons(self):
        return [part.name for part in self.all() if part.getRole() == pyatspi.ROLE_PUSH_BUTTON]

    def enter(self, text):
        roles = (pyatspi.ROLE_TEXT, pyatspi.ROLE_PASSWORD_TEXT)
        field = next(part for part in self.all() if part.getRole() in roles)
        field.queryEditableText().setTextContents(text)

    def press(self, caption):
        button = next(part for part in self.all() if part.name == caption)
        button.queryAction().doAction(0)
        wait_for("the box closed", lambda: self.program.has_ended() or self.accessible not in self.program.windows())


class Screen:
    """A display that nobody else has, and the window manager that gives windows their frames and the keyboard."""

    def __init__(self, size="1024x768"):
        self.size = size

    def __enter__(self):
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            # Without -noreset the server starts anew when its only client leaves: the look for the window manager below
            # would throw the manager out while it connects.
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{self.size}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=(writing,), stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as number:
            os.environ["DISPLAY"] = f":{number.readline().strip()}"
        self.manager = subprocess.Popen(["openbox"])
        try:
            wait_for("the window manager", lambda: subprocess.run(
                ["xdotool", "get_desktop"], capture_output=True).returncode == 0)
        except BaseException:
            self.__exit__()  # or the server would live on and keep the test's output open
            raise
        return self

    def __exit__(self, *_):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()
