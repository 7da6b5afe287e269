"""Sleep, the switch to another session, lock screens and screen savers: as a login manager and screen
savers tell them, and as the X server shows them."""

import os
import signal
import time
import unittest

from desktop import BACKTICK, DIGIT_1, TAB, X, Client, Desktop, Locker, Service, wait_until

MANAGER = "/org/freedesktop/login1"
SESSION = MANAGER + "/session/auto"  # the name by which programs ask for their own
GNOME_SAVER = ("org.gnome.ScreenSaver", "/org/gnome/ScreenSaver")


class LoginManager(Service):
    """A scripted one on a system bus of its own, with one session."""

    def __init__(self, desktop):
        self.bus, address = desktop.start_bus()
        desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = address
        super().__init__(desktop, "org.freedesktop.login1", MANAGER,
                         template=["--template", "logind"], address=address)
        self.script("AddSession", "'auto'", "'seat0'", f"uint32 {os.getuid()}", "'user'", "true")

    def sleep(self, begins):
        self.script("EmitSignal", "org.freedesktop.login1.Manager", "PrepareForSleep", "b",
                    f"[<{str(begins).lower()}>]")

    def signal(self, name):
        """Sends a signal of the session: Lock."""
        self.script("EmitSignal", "org.freedesktop.login1.Session", name, "", "@av []", path=SESSION)

    def set(self, name, value):
        """Changes a property of the session."""
        self.script("UpdateProperties", "org.freedesktop.login1.Session",
                    "{'%s': <%s>}" % (name, str(value).lower()), path=SESSION)

    def sleep_delays(self):
        """How many programs are waited for before the machine sleeps."""
        return self.call("org.freedesktop.login1.Manager.ListInhibitors").count("'sleep'")


class ScreenSaver(Service):
    """A scripted one of some desktop on the session bus."""

    def __init__(self, desktop, name, path):
        super().__init__(desktop, name, path)
        self._interface = name

    def set_active(self, active):
        self.script("EmitSignal", self._interface, "ActiveChanged", "b", f"[<{str(active).lower()}>]")


class SessionTest(unittest.TestCase):
    def at_work(self, desktop):
        """A client in front of a Vorrin with both macros running."""
        desktop.start_ready_vorrin()
        desktop.settle()
        client = Client(desktop)
        client.focus()
        client.start_macros()
        return client

    def assert_away(self, client):
        """Nothing is swallowed and nothing is posted."""
        client.drain()
        self.assertEqual(client.typed("grave", "Tab"), ([BACKTICK, TAB], 0))

    def assert_back_and_off(self, desktop, client):
        desktop.settle()
        self.assertEqual(client.typed(), ([], 0))
        client.start_macros_at_once()

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
            client = self.at_work(desktop)
            wait_until(lambda: manager.sleep_delays() == 1, "the delay")
            manager.sleep(True)
            client.drain()
            self.assertEqual(manager.sleep_delays(), 0)
            self.assert_back_and_off(desktop, client)
            manager.sleep(False)
            wait_until(lambda: manager.sleep_delays() == 1, "the delay of the next time")

    def test_nobody_else_is_taken_for_the_login_manager(self):
        with Desktop() as desktop:
            LoginManager(desktop)
            client = self.at_work(desktop)
            desktop.text("dbus-send", "--system", "--type=signal", MANAGER,
                         "org.freedesktop.login1.Manager.PrepareForSleep", "boolean:true")
            for _ in range(2):
                client.sees_both_macros()

    def test_a_lock_and_a_switch_of_the_session_end_the_macros(self):
        changes = {
            "LockedHint": (lambda to: to.set("LockedHint", True), lambda to: to.set("LockedHint", False)),
            "Active": (lambda to: to.set("Active", False), lambda to: to.set("Active", True)),
        }
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            client = self.at_work(desktop)
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

    def test_a_request_to_lock_ends_the_macros_before_a_locker_shows_up(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            client = self.at_work(desktop)
            manager.signal("Lock")
            client.drain()
            self.assert_back_and_off(desktop, client)

    def test_a_switch_that_nobody_takes_back_ends_when_the_user_is_at_the_window(self):
        with Desktop() as desktop:
            manager = LoginManager(desktop)
            client = self.at_work(desktop)
            manager.set("Active", False)
            self.assert_away(client)
            desktop.call("org.freedesktop.Application.Activate", "{}")
            desktop.wait_until_active(desktop.vorrin_windows()[0])
            desktop.settle()
            client.focus()
            self.assertEqual(client.typed(), ([], 0))
            client.start_macros()

    def test_no_login_manager_or_one_that_hangs_or_a_bus_that_hangs_is_no_obstacle(self):
        for fault in ("none", "process", "bus"):
            with self.subTest(fault), Desktop() as desktop:
                if fault == "none":
                    _, desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = desktop.start_bus()
                else:
                    os.kill(getattr(LoginManager(desktop), fault).pid, signal.SIGSTOP)
                self.at_work(desktop)


class SilentLockers(SessionTest):
    def test_each_kind_gets_every_key_and_ends_the_macros_until_it_is_gone(self):
        with Desktop() as desktop:
            client = self.at_work(desktop)
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
                    client.drain()
                    self.assert_back_and_off(desktop, client)

    def test_one_that_was_there_before_vorrin_is_left_alone(self):
        with Desktop() as desktop:
            locker = Locker(desktop)
            desktop.start_ready_vorrin()
            Client(desktop).focus()
            wait_until(lambda: len(self.arrives(desktop, locker)) == 7, "the lock seen")
            seen = time.monotonic()
            # For some seconds the cover alone would be enough.
            while time.monotonic() < seen + 4:
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

    def test_a_program_that_only_covers_the_screen_or_only_takes_the_keyboard_is_none(self):
        with Desktop() as desktop:
            client = self.at_work(desktop)
            cover = Locker(desktop, "cover")
            wait_until(lambda: cover.clicks() > 100, "clicks")
            desktop.end(cover.process)
            Locker(desktop, "keyboard")
            clicks = client.clicks()
            wait_until(lambda: client.clicks() > clicks + 100, "clicks")


class Savers(SessionTest):
    def test_each_desktops_screen_saver_pauses_the_macros(self):
        names = {"org.freedesktop.ScreenSaver": "/ScreenSaver",
                 "org.cinnamon.ScreenSaver": "/org/cinnamon/ScreenSaver",
                 "org.mate.ScreenSaver": "/org/mate/ScreenSaver",
                 "org.xfce.ScreenSaver": "/org/xfce/ScreenSaver",
                 **dict([GNOME_SAVER])}
        with Desktop() as desktop:
            client = self.at_work(desktop)
            for name, path in names.items():
                with self.subTest(name):
                    saver = ScreenSaver(desktop, name, path)
                    saver.set_active(True)
                    self.assert_away(client)
                    saver.set_active(False)
                    client.sees_both_macros()


if __name__ == "__main__":
    unittest.main(verbosity=2)
