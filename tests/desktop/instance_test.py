"""One Vorrin in a session: a second start, the desktop's requests, and a bus that is not as it should be."""

import contextlib
import os
import pathlib
import re
import signal
import subprocess
import time
import unittest

from desktop import BUS_NAME, PATIENCE, PROGRAM, Client, Desktop, Service, wait_until

APPLICATION = "org.freedesktop.Application"


class OneInstance(unittest.TestCase):
    def second_start(self, desktop, **options):
        second = desktop.start_vorrin(**options)
        self.assertEqual(second.wait(PATIENCE), 0)
        self.assertEqual(second.stderr.read(), "")

    def test_a_second_start_brings_the_first_to_the_front_wherever_it_is(self):
        with Desktop() as desktop:
            first = desktop.start_ready_vorrin()
            [window] = desktop.vorrin_windows()
            client = Client(desktop)
            desktop.text("xdotool", "set_num_desktops", "2")

            def minimise():
                desktop.text("xdotool", "windowminimize", "--sync", window)
                wait_until(lambda: "Iconic" in desktop.text("xprop", "-id", window, "WM_STATE"),
                           "a minimised window")

            def move_to_another_desktop():
                desktop.text("xdotool", "set_desktop_for_window", window, "1")

            for hide in (client.focus, minimise, move_to_another_desktop):
                client.focus()
                hide()
                self.second_start(desktop)
                desktop.wait_until_active(window)
                self.assertEqual(desktop.text("xdotool", "get_desktop"),
                                 desktop.text("xdotool", "get_desktop_for_window", window))
            self.assertEqual(desktop.vorrin_windows(), [window])
            self.assertEqual(desktop.name_owner_process(), first.pid)

    def test_a_second_start_hands_over_the_users_wish_to_see_the_window(self):
        with Desktop() as desktop:
            first = Service(desktop, BUS_NAME, "/org/vorrin/Vorrin", APPLICATION)
            first.script("AddMethod", APPLICATION, "Activate", "a{sv}", "", "")
            self.second_start(desktop, variables={"XDG_ACTIVATION_TOKEN": "token-of-launcher"})
            self.assertIn("'activation-token': <'token-of-launcher'>", first.script("GetCalls"))

    def test_a_busy_first_is_not_waited_for_and_comes_to_the_front_later(self):
        with Desktop() as desktop:
            first = desktop.start_ready_vorrin()
            Client(desktop).focus()
            os.kill(first.pid, signal.SIGSTOP)
            self.second_start(desktop)
            os.kill(first.pid, signal.SIGCONT)
            desktop.wait_until_active(desktop.vorrin_windows()[0])

    def test_two_starts_at_once_leave_exactly_one(self):
        with Desktop() as desktop:
            for _ in range(3):
                starts = [desktop.start_vorrin() for _ in range(2)]
                ended = wait_until(lambda: [start for start in starts if start.poll() is not None],
                                   "one of two that ends")
                self.assertEqual([start.returncode for start in ended], [0])
                [living] = [start for start in starts if start.poll() is None]
                wait_until(lambda: desktop.name_owner_process() == living.pid, "the name's owner")
                wait_until(desktop.vorrin_windows, "its window")
                desktop.end(living)

    def test_one_that_was_killed_or_is_in_another_session_is_no_obstacle(self):
        with Desktop() as desktop, Desktop() as other:
            other.start_ready_vorrin()
            first = desktop.start_ready_vorrin()
            first.kill()
            first.wait()
            second = desktop.start_ready_vorrin()
            wait_until(lambda: desktop.name_owner_process() == second.pid, "the name's new owner")


class DesktopRequests(unittest.TestCase):
    def test_activate_and_open_show_the_window_and_stop_all_stops_both_macros(self):
        with Desktop() as desktop:
            desktop.start_ready_vorrin()
            client = Client(desktop)
            window = desktop.vorrin_windows()[0]
            for request in (["Activate", "{}"], ["Open", "['file:///etc/hostname']", "{}"]):
                client.focus()
                self.assertEqual(desktop.call(f"{APPLICATION}.{request[0]}", *request[1:]), "()")
                desktop.wait_until_active(window)
            client.focus()
            client.start_macros()
            for action in ("no-such", "stop-all"):
                client.sees_both_macros()
                self.assertEqual(desktop.call(APPLICATION + ".ActivateAction", action, "[]", "{}"), "()")
            client.drain()


class Strangers(unittest.TestCase):
    """What anybody on the session bus may send."""

    def test_they_start_nothing_and_change_no_settings(self):
        with Desktop() as desktop:
            desktop.start_ready_vorrin()
            client = Client(desktop)
            self.assertNotIn("deleteLater", desktop.call("org.freedesktop.DBus.Introspectable.Introspect"))
            for method in (APPLICATION + ".deleteLater", "local.vorrin.SingleInstance.deleteLater",
                           APPLICATION + ".ActivateAction", APPLICATION + ".Open",
                           "org.freedesktop.DBus.Properties.GetAll", "no.such.Interface.Method"):
                for arguments in ([], ["'text'"], ["uint64 18446744073709551615", "-1", "''"]):
                    desktop.call(method, *arguments)
            for action in ("start", "run", "quit", "stop-all\n", "x" * 5000):
                self.assertEqual(desktop.call(
                    APPLICATION + ".ActivateAction", repr(action), "[<'a'>, <1>, <@av []>]",
                    "{'activation-token': <[byte 0, 255]>}"), "()")
            client.focus()
            self.assertEqual(client.typed(), ([], 0))
            self.assertFalse((desktop.home / ".config/vorrin").exists())

    def test_a_flood_of_calls_does_not_keep_the_macros_from_stopping(self):
        with Desktop() as desktop:
            desktop.start_ready_vorrin()
            client = Client(desktop)
            client.focus()
            client.start_macros()
            for _ in range(3):
                desktop.start(["sh", "-c", f"while :; do dbus-send --dest={BUS_NAME} --type=method_call "
                               f"/org/vorrin/Vorrin {APPLICATION}.ActivateAction string:none "
                               "array:string:x dict:string:string:a,b; done"])
            client.sees_both_macros()
            desktop.type("Escape")
            wait_until(lambda: client.typed() == ([], 0), "an end of all clicks and digits")


class StartByTheBus(unittest.TestCase):
    """The desktop calls Vorrin by its name, and the bus starts it from the file that is installed."""

    @contextlib.contextmanager
    def desktop_with_service(self):
        with Desktop(session_bus=False) as desktop:
            data = desktop.home / "share"
            services = data / "dbus-1/services"
            services.mkdir(parents=True)
            installed = pathlib.Path(os.environ["VORRIN_BUS_SERVICE"]).read_text()
            services.joinpath(BUS_NAME + ".service").write_text(
                re.sub("^Exec=.*/vorrin$", f'Exec="{PROGRAM}"', installed, flags=re.MULTILINE))
            desktop.environment["XDG_DATA_DIRS"] = str(data)
            _, desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = desktop.start_bus()
            yield desktop
            # The bus does not end with it what it started.
            os.kill(desktop.name_owner_process(), signal.SIGTERM)
            wait_until(lambda: desktop.name_owner_process() is None, "the end of Vorrin")

    def test_a_request_starts_a_vorrin_that_answers_it_and_is_the_first(self):
        for request in (["Activate", "{}"], ["ActivateAction", "stop-all", "[]", "{}"]):
            with self.subTest(request[0]), self.desktop_with_service() as desktop:
                self.assertIsNone(desktop.name_owner_process())
                self.assertEqual(desktop.call(f"{APPLICATION}.{request[0]}", *request[1:]), "()")
                wait_until(desktop.is_ready, "Vorrin at work")
                first, window = desktop.name_owner_process(), desktop.vorrin_windows()
                self.assertEqual(desktop.start_vorrin().wait(PATIENCE), 0)
                self.assertEqual((desktop.name_owner_process(), desktop.vorrin_windows()), (first, window))


class WithoutSessionBus(unittest.TestCase):
    def assert_runs_on(self, vorrin):
        with self.assertRaises(subprocess.TimeoutExpired):
            vorrin.wait(0.3)

    def test_none_or_one_that_cannot_be_reached_is_no_obstacle(self):
        for address in (None, "nonsense", "unix:path=/nonexistent/bus"):
            variables = {} if address is None else {"DBUS_SESSION_BUS_ADDRESS": address}
            with self.subTest(address), Desktop(session_bus=False, variables=variables) as desktop:
                vorrin = desktop.start_ready_vorrin()
                desktop.end(vorrin)
                self.assertEqual(vorrin.returncode, 0)

    def test_one_that_ends_does_not_end_the_macros(self):
        with Desktop() as desktop:
            desktop.start_ready_vorrin()
            client = Client(desktop)
            client.focus()
            client.start_macros()
            desktop.session_bus.kill()
            desktop.session_bus.wait()
            client.sees_both_macros()

    def test_one_that_hangs_is_left_out(self):
        with Desktop() as desktop:
            os.kill(desktop.session_bus.pid, signal.SIGSTOP)
            self.assert_runs_on(desktop.start_ready_vorrin())

    def test_one_that_ends_at_any_moment_leaves_the_program_running(self):
        with Desktop(session_bus=False) as desktop:
            status_file = desktop.home / "Library/Logs/Vorrin-status.txt"
            for round_ in range(15):
                bus, desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = desktop.start_bus()
                status_file.unlink(missing_ok=True)
                vorrin = desktop.start_vorrin()
                wait_until(status_file.exists, "the first connection")
                # About this moment Vorrin asks the bus for many things.
                time.sleep(round_ * 0.003)
                bus.kill()
                wait_until(lambda: len(desktop.vorrin_windows()) == 1, "the window")
                self.assert_runs_on(vorrin)
                desktop.end(vorrin)
                self.assertEqual(vorrin.returncode, 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
