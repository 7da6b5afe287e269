"""The two self-checks as a user runs them, and on programs broken from outside."""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

PROGRAM = os.environ["VORRIN_PROGRAM"]
FORGETFUL = os.environ["VORRIN_WITH_FORGETFUL_DEFAULTS"]
CLIPPED = os.environ["VORRIN_WITH_CLIPPED_CONTROL"]

LOGIC = re.compile(
    r"PASS: rename preserves values, rejects collisions/empty names; deletion persists and handles last "
    r"preset\.\n"
    r"PASS: named preset persistence, all fields round-trip, trimmed names, replacement and invalid-input "
    r"rejection\.\n"
    r"PASS: interval validation, toggle, autorepeat suppression, independent timers, disabled macro, Escape "
    r"stop, no output after stop\. Simulated counts: \[[0-9]+, [0-9]+\]\. No physical events emitted\.\n")
INTERFACE = re.compile(
    r"PASS: real auto-save handlers, invalid drafts preserve saved state, collision recovery, stop-on-edit, "
    r"preset isolation and persistence\.\n"
    r"PASS: fullscreen capability, black/green theme, compact and expanded layout\.\n"
    r"PASS: native UI contains [0-9]+ controls within window bounds; both macros OFF\.\n")
# Root could make a missing directory, so root changes to a user who cannot.
AS_ORDINARY_USER = ("setpriv --reuid 65534 --regid 65534 --clear-groups".split()
                    if os.geteuid() == 0 else [])


class SelfChecks(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        self.home.chmod(0o777)

    def start(self, *command, folder=None, **variables):
        """Starts a program with nothing in its environment but these variables, its home and what the
        sanitizers read."""
        environment = {"HOME": str(self.home), "TMPDIR": str(self.home), **variables,
                       **{name: value for name, value in os.environ.items()
                          if name.endswith("SAN_OPTIONS")}}
        return subprocess.Popen(command, env=environment, cwd=folder or self.home, text=True,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def run_to_end(self, *command, **options):
        """The status, the output and the errors of a program."""
        program = self.start(*command, **options)
        output, errors = program.communicate(timeout=50)
        return program.returncode, output, errors

    def assert_passes(self, expected, *command, **options):
        status, output, errors = self.run_to_end(*command, **options)
        self.assertEqual(status, 0, errors)
        self.assertTrue(expected.fullmatch(output), output)
        return errors

    def assert_fails(self, error, *command, **options):
        status, output, errors = self.run_to_end(*command, **options)
        self.assertNotEqual(status, 0)
        self.assertIn(error, errors)
        return output

    def files_left(self):
        return {path.name for path in self.home.rglob("*")}

    def test_the_logic_check_needs_no_display_bus_or_home_and_leaves_nothing(self):
        self.assert_passes(LOGIC, PROGRAM, "--self-test")
        self.assert_passes(LOGIC, *AS_ORDINARY_USER, PROGRAM, "--self-test", HOME="/nonexistent")
        self.assertEqual(self.files_left(), set())

    def test_two_logic_checks_at_once_do_not_disturb_each_other(self):
        for check in [self.start(PROGRAM, "--self-test") for _ in range(2)]:
            output, errors = check.communicate(timeout=50)
            self.assertTrue(LOGIC.fullmatch(output), output + errors)

    def test_the_interface_check_needs_no_display_and_leaves_nothing_but_its_picture(self):
        for variables in ({}, {"DISPLAY": ":9999"}):
            self.assertEqual(self.assert_passes(INTERFACE, PROGRAM, "--ui-test", **variables), "")
        picture = self.home / "ui-preview.png"
        self.assertEqual(picture.read_bytes()[:8], b"\x89PNG\r\n\x1a\n")
        self.assertFalse([name for name in self.files_left()
                          if re.search("vorrin-ui|org.vorrin|Library", name)])

    def test_a_storage_that_forgets_fails_both_checks_by_name_and_place(self):
        for check in ("--self-test", "--ui-test"):
            output = self.assert_fails("failed: a preset is saved: file ", FORGETFUL, check)
            self.assertNotIn("PASS", output)

    def test_a_control_outside_the_window_fails_the_interface_check(self):
        self.assert_fails("Precondition failed: Clipped control: ", CLIPPED, "--ui-test")
        self.assertNotIn("ui-preview.png", self.files_left())

    def test_a_folder_that_cannot_be_written_fails_the_interface_check(self):
        self.assert_fails("ui-preview.png can be written", PROGRAM, "--ui-test", folder="/proc")


if __name__ == "__main__":
    unittest.main(verbosity=2)
