"""What ./run asks about the file that lets fast clicks through."""

import os
import pathlib
import pty
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
QUIRK = PROJECT / "packaging/linux-input/60-vorrin.quirks"
WAYLAND = {"WAYLAND_DISPLAY": "wayland-0"}


class OfferQuirk(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.memory = self.root / "declined"
        self.installed = self.root / "usr/share/libinput/60-vorrin.quirks"

    def offer(self, session, answer=None):
        """Runs the script and returns all it said; with an answer, on a terminal."""
        environment = {"PATH": os.environ["PATH"], "DESTDIR": str(self.root), **session}
        command = [PROJECT / "scripts/offer-quirk", self.memory]
        if answer is None:
            done = subprocess.run(command, env=environment, stdin=subprocess.DEVNULL, check=True,
                                  stderr=subprocess.PIPE, text=True, timeout=30)
            return done.stderr
        controller, terminal = pty.openpty()
        os.write(controller, answer.encode())
        process = subprocess.Popen(command, env=environment, stdin=terminal, stderr=terminal)
        os.close(terminal)
        said = b""
        while True:
            try:
                part = os.read(controller, 4096)
            except OSError:  # how a terminal ends whose last user is gone
                break
            if not part:
                break
            said += part
        os.close(controller)
        self.assertEqual(process.wait(30), 0)
        return said.decode()

    def test_a_yes_installs_the_file(self):
        said = self.offer(WAYLAND, "y\n")
        self.assertIn("next login", said)
        self.assertEqual(self.installed.read_bytes(), QUIRK.read_bytes())
        self.assertEqual(self.installed.stat().st_mode & 0o777, 0o644)

    def test_the_question_says_what_happens_without_it_and_what_would_be_done(self):
        said = self.offer(WAYLAND, "n\n")
        self.assertIn("of a\r\nhundred clicks 10 ms apart one arrives", said)
        self.assertIn(str(self.installed), said)

    def test_a_no_installs_nothing_and_is_remembered(self):
        self.assertIn("Install it?", self.offer(WAYLAND, "n\n"))
        self.assertFalse(self.installed.exists())
        self.assertEqual(self.offer(WAYLAND, "y\n"), "y\r\n")
        self.assertFalse(self.installed.exists())

    def test_an_empty_answer_is_a_no(self):
        self.offer(WAYLAND, "\n")
        self.assertFalse(self.installed.exists())

    def test_what_is_installed_is_not_asked_about(self):
        self.offer(WAYLAND, "y\n")
        self.assertNotIn("Install it?", self.offer(WAYLAND, "y\n"))

    def test_without_a_terminal_nothing_is_asked_or_done(self):
        self.assertEqual(self.offer(WAYLAND), "")
        self.assertFalse(self.installed.exists())
        self.assertFalse(self.memory.exists())

    def test_an_x11_session_is_not_asked(self):
        self.assertNotIn("Install it?", self.offer({"DISPLAY": ":0"}, "y\n"))

    def test_the_choice_of_the_helper_is_asked_about_in_any_session(self):
        self.assertIn("Install it?", self.offer({"VORRIN_INPUT": "helper"}, "n\n"))

    def test_the_choice_of_x11_is_not_asked_about_in_a_wayland_session(self):
        said = self.offer({**WAYLAND, "VORRIN_INPUT": "x11"}, "y\n")
        self.assertNotIn("Install it?", said)


if __name__ == "__main__":
    unittest.main()
