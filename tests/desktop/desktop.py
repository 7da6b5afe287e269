"""A desktop of a test's own: X server, window manager, message buses, home directory and programs."""

import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

PROGRAM = os.environ["VORRIN_PROGRAM"]
CLIENT = os.environ["VORRIN_TEST_CLIENT"]
LOCKER = os.environ["VORRIN_SCREEN_LOCKER"]
BUS_NAME = "org.vorrin.Vorrin"
PATIENCE = 30.0  # a machine may have much else to do
BACKTICK, TAB, X = 49, 23, 53  # the server's codes of two shortcuts, and of a key that is none
DIGIT_1 = 10  # and of the key that the keyboard macro repeats at first


def wait_until(holds, what, bound=PATIENCE):
    """Waits until `holds()` gives something true, and gives that."""
    end = time.monotonic() + bound
    while time.monotonic() < end:
        result = holds()
        if result:
            return result
        time.sleep(0.02)
    raise AssertionError(f"not within {bound} s: {what}")


class Desktop:
    """Everything ends with the `with` block, in the opposite order of its start."""

    def __init__(self, session_bus=True, variables=None, screen="1280x1024"):
        self._wants_session_bus = session_bus
        self._variables = variables or {}
        self._screen = screen
        self._processes = []

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            self.end(process)
        shutil.rmtree(self.home, ignore_errors=True)

    def _start(self):
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="vorrin-desktop-"))
        self._status_file = self.home / "Library/Logs/Vorrin-status.txt"
        self._status_file.parent.mkdir(parents=True)
        runtime = self.home / "runtime"
        runtime.mkdir(mode=0o700)
        self.environment = {
            "HOME": str(self.home),
            "XDG_RUNTIME_DIR": str(runtime),
            "PATH": os.environ["PATH"],
            "LANG": "C.UTF-8",
            "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent",
            **{name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")},
            **self._variables,
        }
        self._start_display()
        if self._wants_session_bus:
            self.session_bus, address = self.start_bus()
            self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        # The window manager announces itself before it is ready, and a window shown in between it loses.
        ready = self.home / "window-manager-is-ready"
        self.start(["openbox", "--sm-disable", "--startup", f"touch {ready}"])
        wait_until(ready.exists, "a window manager")

    def _start_display(self):
        reading, writing = os.pipe()
        self.start(["Xvfb", "-displayfd", str(writing), "-noreset", "-nolisten", "tcp",
                    "-screen", "0", self._screen + "x24"], pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as number:
            self.environment["DISPLAY"] = ":" + number.readline().strip()

    def start(self, command, **options):
        """Starts a program that ends with the desktop at the latest."""
        environment = {**self.environment, **options.pop("variables", {})}
        options.setdefault("stdout", subprocess.DEVNULL)
        options.setdefault("stderr", subprocess.DEVNULL)
        process = subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL,
                                   start_new_session=True, **options)
        self._processes.append(process)
        return process

    @staticmethod
    def end(process):
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGCONT)
            os.killpg(process.pid, signal.SIGTERM)
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
        for stream in (process.stdout, process.stderr):
            if stream:
                stream.close()

    def start_bus(self):
        """A message bus and its address."""
        bus = self.start(["dbus-daemon", "--session", "--nofork", "--print-address"],
                         stdout=subprocess.PIPE, text=True)
        return bus, bus.stdout.readline().strip()

    def text(self, *command):
        """What a command says on its standard output."""
        return subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                              timeout=PATIENCE, check=False).stdout.strip()

    # Vorrin

    def start_vorrin(self, *arguments, by=(), **options):
        """Starts Vorrin, by way of the command `by` if one is given."""
        return self.start([*by, PROGRAM, *arguments], stderr=subprocess.PIPE, text=True, **options)

    def is_ready(self):
        return (self._status_file.exists() and "ready=true" in self._status_file.read_text()
                and self.vorrin_windows())

    def start_ready_vorrin(self, *arguments, **options):
        self._status_file.unlink(missing_ok=True)
        vorrin = self.start_vorrin(*arguments, **options)
        try:
            wait_until(self.is_ready, "Vorrin at work")
        except AssertionError as error:
            os.killpg(vorrin.pid, signal.SIGKILL)
            raise AssertionError(f"{error}; it said: {vorrin.stderr.read()}") from error
        return vorrin

    def vorrin_windows(self):
        """The windows of Vorrin that the window manager knows, also those that are minimised."""
        _, _, windows = self.text("xprop", "-root", "_NET_CLIENT_LIST").partition("#")
        numbers = [str(int(window, 16)) for window in windows.replace(",", " ").split()]
        return [number for number in numbers
                if self.text("xdotool", "getwindowname", number) == "Vorrin"]

    # The session bus

    def call(self, method, *arguments, path="/org/vorrin/Vorrin", to=BUS_NAME, at=None):
        """What a method answers, on the bus of the address `at` if that is given."""
        bus = ["--address", at] if at else ["--session"]
        return self.text("gdbus", "call", *bus, "--timeout", "10", "--dest", to,
                         "--object-path", path, "--method", method, "--", *arguments)

    def settle(self):
        """Waits until Vorrin has dealt with what was sent to it before."""
        for _ in range(2):
            self.call("org.freedesktop.Application.ActivateAction", "none", "[]", "{}")

    def name_owner_process(self):
        """The process that has Vorrin's name on the session bus; nothing when nobody has."""
        answer = self.call("org.freedesktop.DBus.GetConnectionUnixProcessID", BUS_NAME,
                           path="/org/freedesktop/DBus", to="org.freedesktop.DBus")
        return int(answer.split()[1].rstrip(",)")) if answer else None

    # A user

    def type(self, *keys):
        self.text("xdotool", "key", "--delay", "30", *keys)

    def wait_until_active(self, window):
        wait_until(lambda: self.text("xdotool", "getactivewindow") == window, "the window in front")


class Service:
    """A scripted service on a message bus, the session's if no address is given."""

    def __init__(self, desktop, name, path, interface=None, template=(), address=None):
        self._desktop, self._name, self._path, self._address = desktop, name, path, address
        variables = {"DBUS_SESSION_BUS_ADDRESS": address} if address else {}
        command = template or [name, path, interface or name]
        self.process = desktop.start([sys.executable, "-m", "dbusmock", *command], variables=variables)
        wait_until(lambda: self.call("org.freedesktop.DBus.Peer.Ping"), name)

    def call(self, method, *arguments, path=None):
        return self._desktop.call(method, *arguments, path=path or self._path, to=self._name,
                                  at=self._address)

    def script(self, method, *arguments, path=None):
        """Has it do something: the methods are those of python-dbusmock."""
        return self.call("org.freedesktop.DBus.Mock." + method, *arguments, path=path)


class Receiver:
    """A program of somebody else's, and the keys and clicks that it receives."""

    def __init__(self, desktop, *command):
        self._desktop = desktop
        self._log = desktop.home / pathlib.Path(command[0]).name
        with open(self._log, "wb") as log:
            self.process = desktop.start(command, stdout=log)

    def _lines(self, kind):
        return [line for line in self._log.read_text().splitlines() if line.startswith(kind + " ")]

    def pressed(self):
        """The server's key codes of all presses so far."""
        return [int(line.split()[1]) for line in self._lines("KeyPress")]

    def clicks(self):
        return len(self._lines("ButtonPress"))


class Locker(Receiver):
    """One that locks the screen without telling anybody."""

    def __init__(self, desktop, *arguments):
        super().__init__(desktop, LOCKER, *arguments)
        wait_until(lambda: self._lines("locked"), "a locked screen")


class Client(Receiver):
    """One in front."""

    def __init__(self, desktop):
        super().__init__(desktop, CLIENT)
        self.window = wait_until(lambda: self._lines("window"), "the client's window")[0].split()[1]
        wait_until(lambda: self._lines("FocusIn"), "the client's focus")

    def typed(self, *keys):
        """What arrives of these keys and of all that Vorrin does meanwhile: codes and clicks."""
        before = len(self.pressed()), self.clicks()
        self._desktop.type(*keys, "x")
        wait_until(lambda: X in self.pressed()[before[0]:], "the last key")
        return self.pressed()[before[0]:][:-1], self.clicks() - before[1]

    def drain(self):
        """Has everything that was posted before arrive. On a busy machine Vorrin may hear of its being
        stopped, and the server take what Vorrin posted, later than keys typed afterwards."""
        self._desktop.settle()
        wait_until(lambda: all(self.typed() == ([], 0) for _ in range(3)),
                   "an end of all clicks and digits")

    def focus(self):
        """Has the user go to it, with the keyboard and the pointer."""
        self._desktop.text("xdotool", "windowactivate", "--sync", self.window)
        self._desktop.text("xdotool", "mousemove", "--window", self.window, "50", "50")

    def sees_both_macros(self):
        """Waits until clicks and digits arrive from now on."""
        before, clicks = len(self.pressed()), self.clicks()
        wait_until(lambda: self.clicks() > clicks and DIGIT_1 in self.pressed()[before:],
                   "both macros at work")

    def start_macros(self):
        """Has the user start both macros, and waits until their clicks and digits arrive."""
        self._toggle("Tab", TAB, lambda: self.clicks() > 0)
        self._toggle("grave", BACKTICK, lambda: DIGIT_1 in self.pressed())

    def start_macros_at_once(self):
        """As `start_macros`, by one press of each shortcut that this window must not see."""
        before = len(self.pressed())
        self._desktop.type("Tab", "grave")
        self.sees_both_macros()
        assert not {TAB, BACKTICK} & set(self.pressed()[before:]), "a shortcut was not swallowed"

    def _toggle(self, key, code, has_started):
        # Vorrin may learn a little later than this window that it is not in front any more; until
        # then its shortcuts are keys as any others.
        while True:
            typed = self.pressed().count(code)
            self._desktop.type(key)
            wait_until(lambda: has_started() or self.pressed().count(code) > typed, "an effect of " + key)
            if has_started():
                return
