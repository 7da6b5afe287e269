"""Sleep, the switch to another session, lock screens and screen savers: as a login manager and screen
savers tell them, and as the X server shows them."""

import os
import signal
import subprocess
import sys
import time
import unittest

from desktop import DIGIT_1, X, Client, Desktop, Locker, wait_until

SESSION = "/org/freedesktop/login1/session/auto"
BACKTICK, TAB = 49, 23  # the server's key codes


class LoginManager:
    """A scripted login manager on a system bus of its own, with one session."""

    def __init__(self, desktop):
        self._desktop = desktop
        self.bus, self._address = desktop.start_bus()
        desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self._address
        self.process = desktop.start([sys.executable, "-m", "dbusmock", "--template", "logind"],
                                     stdout=subprocess.DEVNULL)
        # The name by which programs ask for their own one.
        wait_until(lambda: self._mock("/org/freedesktop/login1", "AddSession", "'auto'", "'seat0'",
                                      f"uint32 {os.getuid()}", "'user'", "true"), "the session")

    def _call(self, path, method, *arguments):
        return self._desktop.text("gdbus", "call", "--address", self._address, "--timeout", "10",
                                  "--dest", "org.freedesktop.login1", "--object-path", path,
                                  "--method", method, *arguments)

    def _mock(self, path, method, *arguments):
        return self._call(path, "org.freedesktop.DBus.Mock." + method, *arguments)

    def _signal(self, path, interface, name, signature, arguments):
        self._mock(path, "EmitSignal", interface, name, signature, arguments)

    def sleep(self, begins):
        self._signal("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
                     "b", "[<true>]" if begins else "[<false>]")

    def lock(self):
        self._signal(SESSION, "org.freedesktop.login1.Session", "Lock", "", "@av []")

    def unlock(self):
        self._signal(SESSION, "org.freedesktop.login1.Session", "Unlock", "", "@av []")

    def set(self, name, value):
        """Changes a property of the session."""
        self._mock(SESSION, "UpdateProperties", "org.freedesktop.login1.Session",
                   "{'%s': <%s>}" % (name, str(value).lower()))

    def sleep_delays(self):
        """How many programs are waited for before the machine sleeps."""
        return self._call("/org/freedesktop/login1", "org.freedesktop.login1.Manager.ListInhibitors"
                          ).count("'sleep'")


class ScreenSaver:
    """A scripted screen saver of one of the desktops on the session bus."""

    def __init__(self, desktop, name, path):
        self._desktop, self._name, self._path = desktop, name, path
        self.process = desktop.start([sys.executable, "-m", "dbusmock", name, path, name])
        wait_until(lambda: self._mock("AddMethod", name, "GetActive", "", "b", "ret = False"),
                   "the screen saver")

    def _mock(self, method, *arguments):
        return self._desktop.call("org.freedesktop.DBus.Mock." + method, *arguments, path=self._path,
                                  to=self._name)

    def set_active(self, active):
        self._mock("EmitSignal", self._name, "ActiveChanged", "b", f"[<{str(active).lower()}>]")


class SessionTest(unittest.TestCase):
    def at_work(self, desktop):
        """Vorrin behind a client in front, both macros running."""
        vorrin = desktop.start_ready_vorrin()
        desktop.settle()
        client = Client(desktop)
        client.focus()
        client.start_macros()
        return vorrin, client

    def assert_away(self, client):
        """Nothing is swallowed and nothing is posted."""
        client.drain()
        self.assertEqual(client.typed("grave", "Tab"), ([BACKTICK, TAB], 0))

    def assert_back_and_off(self, desktop, client):
        desktop.settle()
        self.assertEqual(client.typed(), ([], 0))
        client.start_macros_at_once()

    def is_back(self, client):
        """Whether a shortcut is swallowed; starts the macro then."""
        arrived, clicks = client.typed("Tab")
        return TAB not in arrived or clicks > 0

    def arrives(self, desktop, locker):
        """What a lock screen receives of some keys, which ought to be all, and nothing else."""
        before = len(locker.pressed())
        desktop.type("x", "grave", "Tab", "x", "grave", "Tab", "x")
        wait_until(lambda: locker.pressed()[before:].count(X) == 3, "the last key")
        return locker.pressed()[before:]

    def assert_all_arrives(self, desktop, locker):
        self.assertEqual(self.arrives(desktop, locker), [X, BACKTICK, TAB, X, BACKTICK, TAB, X])


class Login(SessionTest):
    def test_sleep_is_delayed_until_both_macros_are_stopped(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            _, client = self.at_work(desktop)
            wait_until(lambda: manager.sleep_delays() == 1, "the delay")
            manager.sleep(True)
            client.drain()
            self.assertEqual(manager.sleep_delays(), 0)
            self.assert_back_and_off(desktop, client)
            manager.sleep(False)
            wait_until(lambda: manager.sleep_delays() == 1, "the delay of the next time")

    def test_a_lock_and_a_switch_of_the_session_end_the_macros(self):
        changes = {
            "Lock": (LoginManager.lock, LoginManager.unlock),
            "LockedHint": (lambda manager: manager.set("LockedHint", True),
                           lambda manager: manager.set("LockedHint", False)),
            "Active": (lambda manager: manager.set("Active", False),
                       lambda manager: manager.set("Active", True)),
        }
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            _, client = self.at_work(desktop)
            for name, (leave, come_back) in changes.items():
                with self.subTest(name):
                    leave(manager)
                    self.assert_away(client)
                    come_back(manager)
                    self.assert_back_and_off(desktop, client)

    def test_a_session_locked_at_the_start_is_left_alone(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            manager.set("LockedHint", True)
            desktop.start_ready_vorrin()
            client = Client(desktop)
            client.focus()
            self.assert_away(client)
            manager.set("LockedHint", False)
            self.assert_back_and_off(desktop, client)

    def test_a_request_to_lock_lasts_with_a_locker_that_heeds_it_and_no_longer(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            _, client = self.at_work(desktop)
            manager.lock()
            # One that leaves the screen to be seen: nothing but the request tells what it is.
            locker = Locker(desktop, "keyboard")
            self.assert_all_arrives(desktop, locker)
            began = time.monotonic()
            wait_until(lambda: time.monotonic() - began > 11, "the time for a locker to be over")
            self.assert_all_arrives(desktop, locker)
            desktop.end(locker.process)
            manager.unlock()
            self.assert_back_and_off(desktop, client)
            manager.lock()
            self.assert_away(client)
            wait_until(lambda: self.is_back(client), "the end of a request that nobody heeds")

    def test_a_lock_that_nobody_takes_back_ends_when_the_user_is_at_the_window(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            _, client = self.at_work(desktop)
            manager.lock()
            self.assert_away(client)
            desktop.call("org.freedesktop.Application.Activate", "{}")
            window = desktop.vorrin_windows()[0]
            wait_until(lambda: desktop.active_window() == window, "the window in front")
            desktop.settle()
            client.focus()
            desktop.settle()
            self.assert_back_and_off(desktop, client)

    def test_no_login_manager_or_one_that_hangs_or_a_bus_that_hangs_is_no_obstacle(self):
        for fault in ("none", "process", "bus"):
            with self.subTest(fault), Desktop() as desktop:
                if fault == "none":
                    _, desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = desktop.start_bus()
                else:
                    os.kill(getattr(LoginManager(desktop), fault).pid, signal.SIGSTOP)
                vorrin, _ = self.at_work(desktop)
                desktop.end(vorrin)
                self.assertEqual(vorrin.returncode, 0)


class SilentLockers(SessionTest):
    def test_each_kind_gets_every_key_and_ends_the_macros_until_it_is_gone(self):
        with Desktop() as desktop:
            _, client = self.at_work(desktop)
            for kind in ("plain", "grabs-first", "again", "dialog", "killed"):
                with self.subTest(kind):
                    locker = Locker(desktop, kind)
                    # What the macros did until they were stopped is on its way.
                    wait_until(lambda: len(self.arrives(desktop, locker)) == 7, "an end of all digits")
                    self.assert_all_arrives(desktop, locker)
                    if kind == "killed":
                        locker.process.kill()
                    desktop.end(locker.process)
                    # Clicks under way at the lock may have cost the client the keyboard.
                    client.focus()
                    wait_until(lambda: self.is_back(client), "Vorrin back")
                    desktop.type("Escape")
                    client.drain()
                    self.assert_back_and_off(desktop, client)

    def test_one_that_was_there_before_vorrin_is_left_alone(self):
        with Desktop() as desktop:
            locker = Locker(desktop)
            desktop.start_ready_vorrin()
            wait_until(lambda: len(self.arrives(desktop, locker)) == 7, "the lock seen")
            self.assert_all_arrives(desktop, locker)

    def test_a_game_that_covers_the_screen_as_they_do_is_none(self):
        with Desktop() as desktop:
            self.at_work(desktop)
            game = Locker(desktop, "game")
            wait_until(lambda: game.clicks() > 100 and DIGIT_1 in game.pressed(), "clicks and digits")
            desktop.type("Escape")
            desktop.settle()
            desktop.type("Tab", "x")
            clicks = game.clicks()
            wait_until(lambda: game.clicks() > clicks + 100, "clicks")
            self.assertNotIn(TAB, game.pressed())

    def test_a_program_that_only_takes_the_keyboard_or_only_covers_the_screen_is_none(self):
        for kind in ("keyboard", "cover"):
            with self.subTest(kind), Desktop() as desktop:
                _, client = self.at_work(desktop)
                other = client if kind == "keyboard" else None
                locker = Locker(desktop, kind)
                other = other or locker
                clicks = other.clicks()
                wait_until(lambda: other.clicks() > clicks + 100, "clicks")


class Savers(SessionTest):
    names = {
        "org.freedesktop.ScreenSaver": "/ScreenSaver",
        "org.gnome.ScreenSaver": "/org/gnome/ScreenSaver",
        "org.cinnamon.ScreenSaver": "/org/cinnamon/ScreenSaver",
        "org.mate.ScreenSaver": "/org/mate/ScreenSaver",
        "org.xfce.ScreenSaver": "/org/xfce/ScreenSaver",
    }

    def assert_goes_on(self, client):
        clicks, pressed = client.clicks(), len(client.pressed())
        wait_until(lambda: client.clicks() > clicks and DIGIT_1 in client.pressed()[pressed:],
                   "both macros going on")

    def test_each_desktops_screen_saver_pauses_the_macros(self):
        with Desktop() as desktop:
            _, client = self.at_work(desktop)
            for name, path in self.names.items():
                with self.subTest(name):
                    saver = ScreenSaver(desktop, name, path)
                    saver.set_active(True)
                    self.assert_away(client)
                    saver.set_active(False)
                    self.assert_goes_on(client)

    def test_escape_ends_the_macros_behind_a_screen_saver(self):
        with Desktop() as desktop:
            _, client = self.at_work(desktop)
            saver = ScreenSaver(desktop, "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver")
            saver.set_active(True)
            self.assert_away(client)
            desktop.type("Escape")
            desktop.settle()
            saver.set_active(False)
            self.assert_back_and_off(desktop, client)

    def test_a_screen_saver_that_locks_ends_the_macros(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            _, client = self.at_work(desktop)
            saver = ScreenSaver(desktop, "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver")
            saver.set_active(True)
            manager.set("LockedHint", True)
            self.assert_away(client)
            manager.set("LockedHint", False)
            saver.set_active(False)
            self.assert_back_and_off(desktop, client)

    def test_a_screen_saver_that_is_killed_pauses_nothing_any_more(self):
        with Desktop() as desktop:
            _, client = self.at_work(desktop)
            saver = ScreenSaver(desktop, "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver")
            saver.set_active(True)
            self.assert_away(client)
            saver.process.kill()
            self.assert_goes_on(client)


if __name__ == "__main__":
    unittest.main(verbosity=2)
