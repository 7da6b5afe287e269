"""The window looks the same on every desktop: its colours are its own."""

import subprocess
import unittest

from desktop import Desktop, wait_until

LIGHT_KDE = """[Colors:Window]
BackgroundNormal=239,240,241
ForegroundNormal=35,38,41
[General]
fixed=Nimbus Mono PS,14,-1,5,50,0,0,0,0,0
"""

SETTINGS = {
    "a light KDE": {"XDG_CURRENT_DESKTOP": "KDE", "KDE_SESSION_VERSION": "5",
                    "KDE_FULL_SESSION": "true"},
    "a light GNOME": {"XDG_CURRENT_DESKTOP": "GNOME", "GTK_THEME": "Adwaita"},
    "a dark GNOME": {"XDG_CURRENT_DESKTOP": "GNOME", "GTK_THEME": "Adwaita:dark"},
    "another style": {"QT_STYLE_OVERRIDE": "Windows"},
    "another theme": {"QT_QPA_PLATFORMTHEME": "kde", "KDE_FULL_SESSION": "true",
                      "XDG_CURRENT_DESKTOP": "KDE"},
}


class Looks(unittest.TestCase):
    def picture(self, desktop, variables, wanted=None):
        """The pixels of the window, once they are the wanted ones, or stay as they are."""
        vorrin = desktop.start_ready_vorrin(variables=variables)
        window = desktop.vorrin_windows()[0]
        desktop.text("xdotool", "windowactivate", "--sync", window)
        desktop.text("xdotool", "mousemove", "0", "0")
        seen = []

        def is_drawn():
            seen.append(self.pixels(desktop, window))
            return seen[-1] == wanted if wanted else len(seen) > 9 and len(set(seen[-10:])) == 1

        wait_until(is_drawn, "the same picture")
        desktop.end(vorrin)
        wait_until(lambda: not desktop.vorrin_windows(), "the end of the window")
        return seen[-1]

    def pixels(self, desktop, window):
        return subprocess.run(["import", "-window", window, "-depth", "8", "rgb:-"],
                              env=desktop.environment, stdout=subprocess.PIPE, check=True,
                              timeout=10).stdout

    def test_no_desktops_theme_changes_it(self):
        with Desktop() as desktop:
            (desktop.home / ".config").mkdir()
            (desktop.home / ".config/kdeglobals").write_text(LIGHT_KDE)
            plain = self.picture(desktop, {})
            for name, variables in SETTINGS.items():
                with self.subTest(name):
                    self.picture(desktop, variables, plain)


if __name__ == "__main__":
    unittest.main(verbosity=2)
