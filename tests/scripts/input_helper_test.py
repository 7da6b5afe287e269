"""What ./run asks about the input helper, places and takes away."""

import os
import pathlib
import pty
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
BUILD = os.environ["VORRIN_BUILD"]
WAYLAND = {"WAYLAND_DISPLAY": "wayland-0"}


class InputHelper(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name, "root")
        self.memory = pathlib.Path(folder.name, "declined")

    def run_script(self, *arguments, session={}, answer=None):
        """Runs the script and returns all it said; with an answer, on a terminal."""
        environment = {"PATH": os.environ["PATH"], "DESTDIR": str(self.root), **session}
        command = [PROJECT / "scripts/input-helper", *arguments]
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

    def offer(self, session, answer=None):
        return self.run_script("offer", BUILD, self.memory, session=session, answer=answer)

    def placed(self):
        return {"/" + str(path.relative_to(self.root)) for path in self.root.rglob("*") if path.is_file()}

    def test_a_yes_places_what_the_question_named_and_nothing_else(self):
        said = self.offer(WAYLAND, "y\n")
        named = {line.strip().removeprefix(str(self.root)) for line in said.splitlines()
                 if line.startswith("    ")}
        self.assertEqual(self.placed(), named)
        self.assertIn("./run --uninstall", said)
        self.assertIn("next login", said)

    def test_what_is_placed_is_not_asked_about_and_another_version_is(self):
        self.run_script("install", BUILD)
        self.assertNotIn("Install it?", self.offer(WAYLAND, "y\n"))
        (self.root / "usr/local/libexec/vorrin-input-helper").write_text("another")
        self.assertIn("in another version", self.offer(WAYLAND, "y\n"))
        self.assertNotIn("Install it?", self.offer(WAYLAND, "y\n"))

    def test_removing_leaves_nothing_that_it_placed(self):
        others = self.root / "usr/share/libinput/50-of-others.quirks"
        others.parent.mkdir(parents=True)
        others.touch()
        self.run_script("install", BUILD)
        self.run_script("remove")
        self.assertEqual(self.placed(), {"/usr/share/libinput/50-of-others.quirks"})
        self.run_script("remove")

    def test_a_no_places_nothing_is_remembered_and_tells_the_command(self):
        for answer in ("n\n", "\n"):
            self.memory.unlink(missing_ok=True)
            self.assertIn("Install it?", self.offer(WAYLAND, answer))
            again = self.offer(WAYLAND, "y\n")
            self.assertNotIn("Install it?", again)
            self.assertIn("scripts/input-helper install " + BUILD, again)
            self.assertEqual(self.placed(), set())

    def test_without_a_terminal_nothing_is_asked_or_done(self):
        self.assertIn("scripts/input-helper install " + BUILD, self.offer(WAYLAND))
        self.assertEqual(self.placed(), set())
        self.assertFalse(self.memory.exists())

    def test_only_sessions_that_need_it_are_asked(self):
        for session in ({"DISPLAY": ":0"}, {**WAYLAND, "VORRIN_INPUT": "x11"}):
            self.assertEqual(self.offer(session), "")
        for session in ({"VORRIN_INPUT": "helper"}, {"XDG_SESSION_TYPE": "wayland"}):
            self.assertNotEqual(self.offer(session), "")


if __name__ == "__main__":
    unittest.main()
