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


class HomeThatCannotBeWritten(unittest.TestCase):
    def test_vorrin_works_with_what_was_stored_keeps_it_and_says_once_what_is_lost_and_why(self):
        with Desktop() as desktop:
            settings = desktop.home / "sealed/.config/vorrin/org.vorrin.Vorrin.json"
            settings.parent.mkdir(parents=True)
            settings.write_text('{"interval0": 0.02}')
            told = self.work_in(desktop, desktop.home / "sealed")
            self.assertEqual(settings.read_text(), '{"interval0": 0.02}')
            self.assertEqual(list(settings.parent.iterdir()), [settings])
            [line] = [line for line in told.splitlines() if "settings" in line]
            self.assertIn(f"The settings in “{settings}” could not be stored", line)
            self.assertIn("Read-only file system", line)

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
        desktop.text("xdotool", "windowactivate", "--sync", window)
        # To the check box of the keyboard macro, which goes off and on.
        desktop.type("Tab", "Tab", "space", "space")
        client.focus()
        client.start_macros()
        vorrin.terminate()
        _, told = vorrin.communicate(timeout=10)
        self.assertEqual(vorrin.returncode, 0, told)
        return told


if __name__ == "__main__":
    unittest.main(verbosity=2)
