"""A second start of Vorrin in one session."""

import contextlib
import os
import pathlib
import re
import signal
import subprocess
import sys
import time
import unittest

from desktop import BUS_NAME, PATIENCE, PROGRAM, Client, Desktop, wait_until


class OneInstance(unittest.TestCase):
    def second_start(self, desktop, **options):
        second = desktop.start_vorrin(**options)
        self.assertEqual(second.wait(PATIENCE), 0, second.stderr.read() if second.stderr else "")
        return second

    def test_a_second_start_brings_the_first_to_the_front_and_ends_with_status_0(self):
        with Desktop() as desktop:
            first = desktop.start_ready_vorrin()
            client = Client(desktop)
            client.focus()
            second = self.second_start(desktop)
            self.assertEqual(second.stderr.read(), "")
            window = desktop.vorrin_windows()
            wait_until(lambda: desktop.active_window() in window, "the first's window in front")
            self.assertEqual(desktop.name_owner_process(), first.pid)
            self.assertEqual(len(window), 1)

    def test_a_second_start_hands_over_the_users_wish_to_see_the_window(self):
        with Desktop() as desktop:
            # In the place of the first, something that remembers what it is asked.
            interface = "org.freedesktop.Application"
            desktop.start([sys.executable, "-m", "dbusmock", BUS_NAME, "/org/vorrin/Vorrin", interface])
            wait_until(lambda: desktop.call("org.freedesktop.DBus.Mock.AddMethod", interface,
                                            "Activate", "a{sv}", "", ""), "a first")
            self.second_start(desktop, variables={"XDG_ACTIVATION_TOKEN": "token-of-launcher"})
            self.assertIn("'activation-token': <'token-of-launcher'>",
                          desktop.call("org.freedesktop.DBus.Mock.GetCalls"))

    def test_a_second_start_shows_a_minimised_window(self):
        with Desktop() as desktop:
            desktop.start_ready_vorrin()
            window = desktop.vorrin_windows()[0]
            desktop.text("xdotool", "windowminimize", "--sync", window)
            wait_until(lambda: desktop.is_minimised(window), "a minimised window")
            self.second_start(desktop)
            wait_until(lambda: desktop.active_window() == window, "the window in front again")

    def test_a_second_start_brings_a_window_from_another_desktop(self):
        with Desktop() as desktop:
            desktop.start_ready_vorrin()
            window = desktop.vorrin_windows()[0]
            desktop.text("xdotool", "set_num_desktops", "2")
            desktop.text("xdotool", "set_desktop_for_window", window, "1")
            desktop.text("xdotool", "set_desktop", "0")
            client = Client(desktop)
            client.focus()
            self.second_start(desktop)
            wait_until(lambda: desktop.active_window() == window, "the window in front")
            self.assertEqual(desktop.text("xdotool", "get_desktop"),
                             desktop.text("xdotool", "get_desktop_for_window", window))

    def test_a_busy_first_is_not_waited_for_and_comes_to_the_front_later(self):
        with Desktop() as desktop:
            first = desktop.start_ready_vorrin()
            client = Client(desktop)
            client.focus()
            os.kill(first.pid, signal.SIGSTOP)
            self.second_start(desktop)
            os.kill(first.pid, signal.SIGCONT)
            window = desktop.vorrin_windows()[0]
            wait_until(lambda: desktop.active_window() == window, "the window in front")

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

    def test_a_first_that_was_killed_leaves_no_obstacle(self):
        with Desktop() as desktop:
            first = desktop.start_ready_vorrin()
            first.kill()
            first.wait()
            second = desktop.start_ready_vorrin()
            wait_until(lambda: desktop.name_owner_process() == second.pid, "the name's new owner")

    def test_the_first_in_another_session_is_none_of_this_one(self):
        with Desktop() as desktop, Desktop() as other:
            desktop.start_ready_vorrin()
            other.start_ready_vorrin()

    def test_the_self_checks_take_no_part(self):
        with Desktop() as desktop:
            first = desktop.start_ready_vorrin()
            for check in ("--self-test", "--ui-test"):
                run = desktop.start_vorrin(check, cwd=desktop.home)
                self.assertEqual(run.wait(60), 0, run.stderr.read())
            self.assertTrue((desktop.home / "ui-preview.png").exists())
            self.assertEqual(desktop.name_owner_process(), first.pid)


class DesktopRequests(unittest.TestCase):
    def test_activate_and_open_bring_the_window_to_the_front(self):
        with Desktop() as desktop:
            desktop.start_ready_vorrin()
            client = Client(desktop)
            window = desktop.vorrin_windows()[0]
            for request in (["Activate", "{}"], ["Open", "['file:///etc/hostname']", "{}"]):
                client.focus()
                self.assertEqual(desktop.call("org.freedesktop.Application." + request[0],
                                              *request[1:]), "()")
                wait_until(lambda: desktop.active_window() == window, "the window in front")

    def test_the_action_stop_all_stops_both_macros(self):
        with Desktop() as desktop:
            desktop.start_ready_vorrin()
            client = Client(desktop)
            client.focus()
            client.start_macros()
            self.assertEqual(desktop.call("org.freedesktop.Application.ActivateAction", "stop-all",
                                          "[]", "{}"), "()")
            client.drain()
            self.assertEqual(desktop.call("org.freedesktop.Application.ActivateAction", "no-such",
                                          "[]", "{}"), "()")
            desktop.settle()
            self.assertEqual(client.typed(), ([], 0))


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
                re.sub("^Exec=.*/vorrin$", "Exec=" + PROGRAM, installed, flags=re.MULTILINE))
            desktop.environment["XDG_DATA_DIRS"] = str(data)
            _, desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = desktop.start_bus()
            yield desktop
            # The bus does not end with it what it started.
            os.kill(desktop.name_owner_process(), signal.SIGTERM)
            wait_until(lambda: desktop.name_owner_process() is None, "the end of Vorrin")

    def test_activate_starts_vorrin_and_shows_its_window(self):
        with self.desktop_with_service() as desktop:
            self.assertIsNone(desktop.name_owner_process())
            self.assertEqual(desktop.call("org.freedesktop.Application.Activate", "{}"), "()")
            wait_until(desktop.vorrin_windows, "the window")
            wait_until(lambda: "ready=true" in desktop.status(), "Vorrin at work")
            window = desktop.vorrin_windows()
            self.assertEqual(desktop.call("org.freedesktop.Application.Activate", "{}"), "()")
            self.assertEqual(desktop.vorrin_windows(), window)

    def test_a_vorrin_that_the_bus_started_is_the_first(self):
        with self.desktop_with_service() as desktop:
            desktop.call("org.freedesktop.Application.Activate", "{}")
            first = desktop.name_owner_process()
            wait_until(desktop.vorrin_windows, "the window")
            self.assertEqual(desktop.start_vorrin().wait(PATIENCE), 0)
            self.assertEqual(desktop.name_owner_process(), first)

    def test_an_action_is_answered_by_a_vorrin_that_it_starts(self):
        with self.desktop_with_service() as desktop:
            self.assertEqual(desktop.call("org.freedesktop.Application.ActivateAction", "stop-all",
                                          "[]", "{}"), "()")
            wait_until(lambda: "ready=true" in desktop.status(), "Vorrin at work")

    def test_a_start_while_the_bus_starts_another_leaves_one(self):
        with self.desktop_with_service() as desktop:
            started = desktop.start_vorrin()
            desktop.call("org.freedesktop.Application.Activate", "{}")
            wait_until(lambda: started.poll() == 0 or
                       desktop.name_owner_process() == started.pid, "one Vorrin")
            wait_until(lambda: len(desktop.vorrin_windows()) == 1, "one window")


class WithoutSessionBus(unittest.TestCase):
    def start_in_time(self, desktop, **options):
        begin = time.monotonic()
        vorrin = desktop.start_ready_vorrin(**options)
        self.assertLess(time.monotonic() - begin, 24)  # the libraries would wait for 25
        desktop.end(vorrin)
        self.assertEqual(vorrin.returncode, 0)

    def test_no_bus_at_all(self):
        with Desktop(session_bus=False) as desktop:
            self.start_in_time(desktop)

    def test_an_address_that_leads_nowhere(self):
        for address in ("unix:path=/nonexistent/bus", "nonsense", "", "autolaunch:"):
            with self.subTest(address), Desktop(
                    session_bus=False, variables={"DBUS_SESSION_BUS_ADDRESS": address}) as desktop:
                self.start_in_time(desktop)

    def test_a_bus_that_hangs(self):
        with Desktop() as desktop:
            os.kill(desktop.session_bus.pid, signal.SIGSTOP)
            self.start_in_time(desktop)

    def test_a_bus_that_ends_leaves_the_program_running(self):
        with Desktop() as desktop:
            vorrin = desktop.start_ready_vorrin()
            desktop.end(desktop.session_bus)
            client = Client(desktop)
            client.focus()
            desktop.type("x")
            wait_until(client.pressed, "a key")
            with self.assertRaises(subprocess.TimeoutExpired):
                vorrin.wait(0.5)

    def test_a_bus_that_ends_at_any_moment_of_the_start_leaves_the_program_running(self):
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
                with self.assertRaises(subprocess.TimeoutExpired):
                    vorrin.wait(0.2)
                desktop.end(vorrin)
                self.assertEqual(vorrin.returncode, 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
