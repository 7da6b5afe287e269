"""A home directory in which nothing can be stored."""

import unittest

from desktop import Client, Desktop, wait_until


class HomeThatCannotBeWritten(unittest.TestCase):
    def test_vorrin_works_and_says_once_what_is_lost(self):
        # Nobody can make anything there, root neither.
        with Desktop(variables={"HOME": "/proc"}) as desktop:
            vorrin = desktop.start_vorrin()
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
            lines = [line for line in told.splitlines() if "settings" in line]
            self.assertEqual(len(lines), 1, told)
            self.assertIn("No full access to the settings in “/proc/.config/vorrin/", lines[0])

    def change_a_setting(self, desktop, window):
        desktop.text("xdotool", "windowactivate", "--sync", window)
        # To the check box of the keyboard macro, which goes off and on.
        desktop.type("Tab", "Tab", "space", "space")


if __name__ == "__main__":
    unittest.main(verbosity=2)
