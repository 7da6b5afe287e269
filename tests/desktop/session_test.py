"""Sleep, the switch to another session, and the lock screen, as a login manager and screen savers
tell them."""

import os
import signal
import subprocess
import sys
import time
import unittest

from desktop import DIGIT_1, X, Client, Desktop, Locker, wait_until

SESSION = "/org/freedesktop/login1/session/c1"
BACKTICK, TAB = 49, 23  # the server's key codes


class LoginManager:
    """A scripted login manager on a system bus of its own, with one session: c1."""

    def __init__(self, desktop):
        self._desktop = desktop
        self.bus, self._address = desktop.start_bus()
        desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self._address
        desktop.environment["XDG_SESSION_ID"] = "c1"
        self.process = desktop.start([sys.executable, "-m", "dbusmock", "--template", "logind"],
                                     stdout=subprocess.DEVNULL)
        wait_until(lambda: self._mock("/org/freedesktop/login1", "AddSession", "'c1'", "'seat0'",
                                      f"uint32 {os.getuid()}", "'user'", "true"), "the session c1")

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

    def knows_sessions_of_processes(self):
        """As it does of processes started in a session, not by a service of the user's."""
        self._mock("/org/freedesktop/login1", "AddMethod", "org.freedesktop.login1.Manager",
                   "GetSessionByPID", "u", "o", f"ret = '{SESSION}'")

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

    def assert_away(self, desktop, client):
        client.drain()
        self.assertEqual(client.typed("grave", "Tab"), ([BACKTICK, TAB], 0))

    def assert_back_and_off(self, desktop, client):
        desktop.settle()
        self.assertEqual(client.typed(), ([], 0))
        client.start_macros_at_once()

    def is_back(self, desktop, client):
        """Whether a shortcut is swallowed; starts the macro then."""
        arrived, clicks = client.typed("Tab")
        return TAB not in arrived or clicks > 0

    def assert_all_arrives(self, desktop, locker):
        """Nothing is missing of what is typed at the lock screen, and nothing is added."""
        before = len(locker.pressed())
        desktop.type("x", "grave", "Tab", "x", "grave", "Tab", "x")
        wait_until(lambda: locker.pressed()[before:].count(X) == 3, "the last key")
        self.assertEqual(locker.pressed()[before:], [X, BACKTICK, TAB, X, BACKTICK, TAB, X])

    def assert_stopped_but_there(self, desktop, client):
        client.drain()
        self.assert_back_and_off(desktop, client)


class Login(SessionTest):
    def test_sleep_is_delayed_until_both_macros_are_stopped(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            _, client = self.at_work(desktop)
            wait_until(lambda: manager.sleep_delays() == 1, "the delay")
            manager.sleep(True)
            self.assert_stopped_but_there(desktop, client)
            manager.sleep(False)

    def test_locking_is_noticed_by_each_of_its_signs(self):
        signs = {
            "Lock": (LoginManager.lock, LoginManager.unlock),
            "LockedHint": (lambda manager: manager.set("LockedHint", True),
                           lambda manager: manager.set("LockedHint", False)),
            "Active": (lambda manager: manager.set("Active", False),
                       lambda manager: manager.set("Active", True)),
        }
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            _, client = self.at_work(desktop)
            for name, (leave, come_back) in signs.items():
                with self.subTest(name):
                    leave(manager)
                    self.assert_away(desktop, client)
                    come_back(manager)
                    self.assert_back_and_off(desktop, client)

    def test_a_request_to_lock_that_nobody_heeds_is_forgotten(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            _, client = self.at_work(desktop)
            manager.lock()
            self.assert_away(desktop, client)
            wait_until(lambda: self.is_back(desktop, client), "Vorrin back")

    def test_a_request_to_lock_ends_with_the_locker_that_heeds_it(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            _, client = self.at_work(desktop)
            manager.lock()
            # One that leaves the screen to be seen: nothing but the request tells what it is.
            locker = Locker(desktop, "keyboard")
            self.assert_all_arrives(desktop, locker)
            # Longer than a request is believed without a locker.
            began = time.monotonic()
            wait_until(lambda: time.monotonic() - began > 12, "the patience to end", bound=20)
            self.assert_all_arrives(desktop, locker)
            desktop.end(locker.process)
            wait_until(lambda: self.is_back(desktop, client), "Vorrin back")

    def test_a_lock_that_nobody_takes_back_ends_when_the_user_is_at_the_window(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            _, client = self.at_work(desktop)
            manager.lock()
            self.assert_away(desktop, client)
            desktop.call("org.freedesktop.Application.Activate", "{}")
            window = desktop.vorrin_windows()[0]
            wait_until(lambda: desktop.active_window() == window, "the window in front")
            desktop.settle()
            client.focus()
            desktop.settle()
            self.assert_back_and_off(desktop, client)

    def test_a_session_locked_at_the_start_is_left_alone(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            manager.set("LockedHint", True)
            desktop.start_ready_vorrin()
            client = Client(desktop)
            client.focus()
            self.assert_away(desktop, client)
            manager.set("LockedHint", False)
            self.assert_back_and_off(desktop, client)

    def test_the_session_is_the_one_that_vorrin_was_started_in(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            # Whatever the environment says, which may be left over from another session.
            desktop.environment["XDG_SESSION_ID"] = "another"
            manager.knows_sessions_of_processes()
            _, client = self.at_work(desktop)
            manager.set("LockedHint", True)
            self.assert_away(desktop, client)
            manager.set("LockedHint", False)
            self.assert_back_and_off(desktop, client)

    def test_no_login_manager_is_no_obstacle(self):
        with Desktop() as desktop:
            _, desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = desktop.start_bus()
            vorrin, _ = self.at_work(desktop)
            desktop.end(vorrin)
            self.assertEqual(vorrin.returncode, 0)

    def test_a_login_manager_or_a_bus_that_never_answers_is_no_obstacle(self):
        for hanging in ("process", "bus"):
            with self.subTest(hanging), Desktop() as desktop:
                os.kill(getattr(LoginManager(desktop), hanging).pid, signal.SIGSTOP)
                begin = time.monotonic()
                vorrin, _ = self.at_work(desktop)
                self.assertLess(time.monotonic() - begin, 24)  # the libraries would wait for 25
                desktop.end(vorrin)
                self.assertEqual(vorrin.returncode, 0)


class SilentLockers(SessionTest):
    def test_a_locker_that_tells_nobody_gets_every_key_and_nothing_else(self):
        with Desktop() as desktop:
            self.at_work(desktop)
            locker = Locker(desktop)
            # The macros may notice a moment later; what they did until then is on its way.
            wait_until(lambda: self.posts_nothing(desktop, locker), "an end of all digits")
            self.assert_all_arrives(desktop, locker)

    def test_it_counts_from_its_first_key(self):
        with Desktop() as desktop:
            desktop.start_ready_vorrin()
            client = Client(desktop)
            client.focus()
            client.start_macros()
            desktop.type("Escape")
            client.drain()
            self.assert_all_arrives(desktop, Locker(desktop))

    def test_after_it_everything_is_as_before_and_the_macros_are_off(self):
        with Desktop() as desktop:
            _, client = self.at_work(desktop)
            locker = Locker(desktop)
            wait_until(lambda: self.posts_nothing(desktop, locker), "an end of all digits")
            desktop.end(locker.process)
            # The clicks under way when the screen was locked may have cost the client the keyboard.
            client.focus()
            self.assert_back_and_off(desktop, client)

    def test_one_that_shows_an_ordinary_window_too_is_one(self):
        with Desktop() as desktop:
            self.at_work(desktop)
            locker = Locker(desktop, "dialog")
            wait_until(lambda: self.posts_nothing(desktop, locker), "an end of all digits")
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

    def test_a_program_that_only_takes_the_keyboard_is_none(self):
        with Desktop() as desktop:
            _, client = self.at_work(desktop)
            Locker(desktop, "keyboard")
            clicks = client.clicks()
            wait_until(lambda: client.clicks() > clicks + 100, "clicks")

    def posts_nothing(self, desktop, locker):
        desktop.settle()
        before = len(locker.pressed())
        desktop.type("x")
        wait_until(lambda: X in locker.pressed()[before:], "a key")
        return locker.pressed()[before:] == [X]


class Savers(SessionTest):
    names = {
        "org.freedesktop.ScreenSaver": "/ScreenSaver",
        "org.gnome.ScreenSaver": "/org/gnome/ScreenSaver",
        "org.cinnamon.ScreenSaver": "/org/cinnamon/ScreenSaver",
        "org.mate.ScreenSaver": "/org/mate/ScreenSaver",
        "org.xfce.ScreenSaver": "/org/xfce/ScreenSaver",
    }

    def test_each_desktops_screen_saver_is_heard(self):
        with Desktop() as desktop:
            _, client = self.at_work(desktop)
            for name, path in self.names.items():
                with self.subTest(name):
                    saver = ScreenSaver(desktop, name, path)
                    saver.set_active(True)
                    self.assert_away(desktop, client)
                    saver.set_active(False)
                    self.assert_back_and_off(desktop, client)

    def test_a_screen_saver_that_is_killed_locks_nothing_any_more(self):
        with Desktop() as desktop:
            _, client = self.at_work(desktop)
            saver = ScreenSaver(desktop, "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver")
            saver.set_active(True)
            self.assert_away(desktop, client)
            saver.process.kill()
            saver.process.wait()
            wait_until(lambda: desktop.name_owner_process("org.gnome.ScreenSaver") is None,
                       "the name given back")
            self.assert_back_and_off(desktop, client)


if __name__ == "__main__":
    unittest.main(verbosity=2)
