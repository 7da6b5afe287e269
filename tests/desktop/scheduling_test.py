"""The right to run in real time while a macro runs: the process's own, or RealtimeKit's to give."""

import os
import signal
import subprocess
import sys
import unittest

from desktop import Client, Desktop, Service, wait_until

NAME = "org.freedesktop.RealtimeKit1"
GRANT = """import os
os.sched_setscheduler(args[0], os.SCHED_RR | os.SCHED_RESET_ON_FORK, os.sched_param(args[1]))"""

# Root has every right; Vorrin's users have this one seldom.
WITHOUT_RIGHT = ["setpriv", "--bounding-set", "-sys_nice"] if os.geteuid() == 0 else []


def may_grant():
    """Whether this machine lets the tests, and so the scripted service, give the right."""
    command = "import os; os.sched_setscheduler(0, os.SCHED_RR, os.sched_param(1))"
    return subprocess.run([sys.executable, "-c", command], stderr=subprocess.DEVNULL,
                          check=False).returncode == 0


class RealtimeKit(Service):
    """A scripted one on a system bus of its own."""

    def __init__(self, desktop, code):
        _, address = desktop.start_bus()
        desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = address
        super().__init__(desktop, NAME, "/org/freedesktop/RealtimeKit1", address=address)
        self.script("AddMethod", NAME, "MakeThreadRealtime", "tu", "", code)

    def wait_for_request(self, thread):
        wait_until(lambda: f"uint64 {thread}" in self.script("GetCalls"), "the request")


def is_real_time(process):
    return os.sched_getscheduler(process.pid) & ~os.SCHED_RESET_ON_FORK == os.SCHED_RR


class Scheduling(unittest.TestCase):
    def start_clicking(self, desktop, **options):
        vorrin = desktop.start_ready_vorrin(**options)
        self.assertFalse(is_real_time(vorrin))
        client = Client(desktop)
        client.focus()
        client.start_macros()
        return vorrin, client

    def assert_ordinary_after_escape(self, desktop, vorrin, client):
        desktop.type("Escape")
        client.drain()
        wait_until(lambda: not is_real_time(vorrin), "ordinary scheduling")

    def test_the_service_is_asked_and_the_right_given_back(self):
        with Desktop() as desktop:
            kit = RealtimeKit(desktop, GRANT)
            vorrin, client = self.start_clicking(desktop, by=WITHOUT_RIGHT)
            kit.wait_for_request(vorrin.pid)
            wait_until(lambda: is_real_time(vorrin) == may_grant(), "real time")
            with open(f"/proc/{vorrin.pid}/limits", encoding="utf-8") as limits:
                bounds = next(line for line in limits if line.startswith("Max realtime timeout"))
            self.assertEqual(bounds.split()[3:5], ["100000", "200000"])
            self.assert_ordinary_after_escape(desktop, vorrin, client)

    def test_a_grant_that_comes_after_the_end_is_given_back(self):
        with Desktop() as desktop:
            kit = RealtimeKit(desktop, GRANT)
            os.kill(kit.process.pid, signal.SIGSTOP)
            vorrin, client = self.start_clicking(desktop, by=WITHOUT_RIGHT)
            self.assert_ordinary_after_escape(desktop, vorrin, client)
            os.kill(kit.process.pid, signal.SIGCONT)
            kit.wait_for_request(vorrin.pid)
            wait_until(lambda: not is_real_time(vorrin), "ordinary scheduling")


if __name__ == "__main__":
    unittest.main(verbosity=2)
