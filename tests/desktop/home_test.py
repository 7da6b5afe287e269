"""A home directory in which nothing can be stored."""

import os
import subprocess
import unittest

from desktop import PROGRAM, Client, Desktop, wait_until


# Starts a program for which a directory can only be read, also by the administrator. A changed root
# directory is no mount, and those who change it see to it that others see no mounts of theirs.
IN_CHANGED_ROOT = subprocess.run(["mountpoint", "-q", "/"], check=False).returncode != 0
WITH_READ_ONLY_DIRECTORY = (
    ["unshare", "--mount", *(["--propagation", "unchanged"] if IN_CHANGED_ROOT else []),
     *([] if os.getuid() == 0 else ["--map-root-user"]), "sh", "-c",
     'mount --bind "$0" "$0" && mount -o remount,bind,ro "$0" && exec "$@"'])
SETTINGS = ".config/vorrin/org.vorrin.Vorrin.json"


class HomeThatCannotBeWritten(unittest.TestCase):
    def test_vorrin_works_with_what_was_stored_keeps_it_and_says_once_what_is_lost_and_why(self):
        with Desktop() as desktop:
            home = desktop.home / "sealed"
            (home / "Library/Logs").mkdir(parents=True)
            self.store_settings(desktop, home)
            before = self.contents(home)
            told = self.work_in(desktop, home)
            self.assert_told_once(told, home / SETTINGS, "Read-only file system")
            self.assertEqual(self.contents(home), before)

    def work_in(self, desktop, home):
        """A start of Vorrin, both macros, a change of settings, both macros again. What Vorrin tells
        meanwhile on the terminal."""
        vorrin = desktop.start([*WITH_READ_ONLY_DIRECTORY, home, PROGRAM], stderr=subprocess.PIPE,
                               text=True, variables={"HOME": str(home)})
        window = wait_until(desktop.vorrin_windows, "the window")[0]
        client = Client(desktop)
        client.focus()
        client.start_macros()
        desktop.type("Escape")
        self.change_a_setting(desktop, window)
        client.focus()
        client.start_macros()
        vorrin.terminate()
        _, told = vorrin.communicate(timeout=10)
        self.assertEqual(vorrin.returncode, 0, told)
        return told

    def store_settings(self, desktop, home):
        vorrin = desktop.start_vorrin(variables={"HOME": str(home)})
        window = wait_until(desktop.vorrin_windows, "the window")[0]
        self.change_a_setting(desktop, window)
        wait_until((home / SETTINGS).exists, "stored settings")
        desktop.end(vorrin)
        wait_until(lambda: not desktop.vorrin_windows(), "the end of the window")

    def change_a_setting(self, desktop, window):
        desktop.text("xdotool", "windowactivate", "--sync", window)
        # To the check box of the keyboard macro, which goes off and on.
        desktop.type("Tab", "Tab", "space", "space")

    def assert_told_once(self, told, path, cause):
        lines = [line for line in told.splitlines() if "settings" in line]
        self.assertEqual(len(lines), 1, told)
        self.assertIn(f"The settings in “{path}” could not be stored", lines[0])
        self.assertIn(cause, lines[0])

    def contents(self, home):
        return {path.relative_to(home): path.read_bytes() for path in home.rglob("*")
                if path.is_file()}


if __name__ == "__main__":
    unittest.main(verbosity=2)
