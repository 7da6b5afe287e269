"""Vorrin as a screen reader meets it, and worked by the keyboard alone."""

import os
import unittest
import warnings

from desktop import BUS_NAME, Desktop, wait_until


def kind(thing):
    """What its user hears a thing called; older accessibility services say it longer."""
    name = thing.get_role_name()
    return "button" if name == "push button" else name


def purpose(thing):
    """The name; that of a pop-up is what it shows, and its description says what it is for."""
    return thing.get_description() if kind(thing) == "combo box" else thing.get_name()


class Accessibility(unittest.TestCase):
    """One desktop for all tests: the library of the screen readers knows only one in its life."""

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Desktop())
        desktop = cls.desktop
        desktop.start(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
        wait_until(lambda: "true" in desktop.call(
            "org.freedesktop.DBus.NameHasOwner", "org.a11y.Bus", path="/org/freedesktop/DBus",
            to="org.freedesktop.DBus"), "the accessibility services")
        desktop.call("org.freedesktop.DBus.Properties.Set", "org.a11y.Status", "IsEnabled", "<true>",
                     path="/org/a11y/bus", to="org.a11y.Bus")
        desktop.start_ready_vorrin()
        desktop.text("xdotool", "windowactivate", "--sync", desktop.vorrin_windows()[0])
        os.environ.update(desktop.environment)
        warnings.simplefilter("ignore")
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi, GLib
        cls.atspi, cls.context = Atspi, GLib.MainContext.default()
        Atspi.init()
        cls.told = []
        cls.listener = Atspi.EventListener.new(
            lambda event: cls.told.append((kind(event.source), event.source.get_name())))
        cls.listener.register("object:property-change:accessible-name")
        cls.application = wait_until(cls.find_application, "Vorrin among the applications")

    @classmethod
    def pump(cls):
        while cls.context.iteration(False):
            pass

    @classmethod
    def find_application(cls):
        cls.pump()
        root = cls.atspi.get_desktop(0)
        found = [root.get_child_at_index(i) for i in range(root.get_child_count())]
        return next((one for one in found if one.get_name() == BUS_NAME), None)

    def everything(self, inside=None):
        inside = inside or self.application
        for index in range(inside.get_child_count()):
            child = inside.get_child_at_index(index)
            if child is not None:
                yield child
                yield from self.everything(child)

    def states(self, thing):
        self.pump()
        return {state.value_nick for state in thing.get_state_set().get_states()}

    def find(self, role, name):
        """The thing of this role that has `name` as its name or description."""
        self.pump()
        for thing in self.everything():
            if kind(thing) == role and name in (thing.get_name(), thing.get_description()):
                return thing
        return None

    def has(self, role, name):
        return wait_until(lambda: self.find(role, name), f"{role} “{name}”")

    def focused(self, inside=None):
        self.pump()
        for thing in self.everything(inside):
            if {"focused", "focusable"} <= self.states(thing) and kind(thing) != "list item":
                return kind(thing), purpose(thing)
        return None

    def go_to(self, role, name, inside=None):
        """Has the user press Tab until the thing is in focus."""
        for _ in range(30):
            if self.focused(inside) == (role, name):
                return
            before = self.focused(inside)
            self.desktop.type("Tab")
            wait_until(lambda: self.focused(inside) != before, "another thing in focus")
        self.fail(f"{role} “{name}” is not reached by the keyboard")

    def wait_until_told(self, role, beginning):
        def is_told():
            self.pump()
            return any(told == role and name.startswith(beginning) for told, name in self.told)

        wait_until(is_told, f"{role} “{beginning}”, told")

    def test_every_control_says_what_it_is_and_what_it_is_for(self):
        controls = [(kind(thing), purpose(thing))
                    for thing in self.everything() if "focusable" in self.states(thing)
                    and kind(thing) not in ("list", "list item")]
        self.assertEqual(controls, [
            ("button", "Full screen"),
            ("check box", "Enable keyboard repeat"),
            ("button", "Start keyboard repeat"),
            ("combo box", "Shortcut of keyboard repeat"),
            ("text", "Seconds between two actions of keyboard repeat"),
            ("check box", "Enable left mouse click"),
            ("button", "Start left mouse click"),
            ("combo box", "Shortcut of left mouse click"),
            ("text", "Seconds between two actions of left mouse click"),
            ("combo box", "Keyboard output"),
            ("button", "Stop all · Esc"),
            ("text", "Preset name"),
            ("button", "Save preset"),
            ("combo box", "Saved presets"),
            ("button", "Load"),
            ("button", "Rename"),
            ("button", "Delete"),
            ("button", "Open Accessibility Settings"),
            ("button", "Retry connection"),
        ])

    def test_texts_and_states_are_read_as_they_are_shown(self):
        for text in ("> VORRIN", "Toggle once to repeat. Escape always stops both macros.", "OFF",
                     "Connected · settings persist · starts OFF on every launch"):
            self.has("label", text)
        for state, role, name in (("active", "frame", "Vorrin"),
                                  ("checked", "check box", "Enable left mouse click"),
                                  ("sensitive", "button", "Start left mouse click")):
            self.assertIn(state, self.states(self.has(role, name)))
        self.assertNotIn("sensitive", self.states(self.has("combo box", "Saved presets")))

    def test_a_macro_is_worked_by_the_keyboard_and_its_state_is_told(self):
        self.told.clear()
        self.go_to("button", "Start keyboard repeat")
        self.desktop.type("space")
        self.has("label", "PAUSED · app focused")
        self.has("button", "Stop keyboard repeat")
        self.wait_until_told("label", "PAUSED · app focused")
        self.assertNotIn(("push button", "Start left mouse click"), self.told)  # it did not change
        self.told.clear()
        self.desktop.type("Escape")
        self.has("button", "Start keyboard repeat")
        self.wait_until_told("label", "OFF")

    def test_settings_are_changed_by_the_keyboard_and_a_refusal_is_told(self):
        self.told.clear()
        self.go_to("text", "Seconds between two actions of left mouse click")
        self.desktop.type("ctrl+a", "x")
        self.wait_until_told("label", "Not saved: intervals must be 0.001–3600")
        self.told.clear()
        self.desktop.type("ctrl+a", "2")
        self.wait_until_told("label", "Saved automatically")
        self.go_to("combo box", "Shortcut of left mouse click")
        for key, shortcut in (("Down", "F6"), ("Up", "Tab")):
            self.desktop.type(key)
            wait_until(lambda: self.has("combo box", "Shortcut of left mouse click").get_name() ==
                       shortcut, "another shortcut")

    def test_a_preset_is_saved_and_deleted_by_the_keyboard(self):
        self.go_to("text", "Preset name")
        self.desktop.type("g", "a", "m", "e")
        self.go_to("button", "Save preset")
        self.desktop.type("space")
        wait_until(lambda: self.has("combo box", "Saved presets").get_name() == "game", "the preset")
        self.go_to("button", "Delete")
        self.desktop.type("space")
        question = self.has("dialog", "Delete “game”?")
        wait_until(lambda: self.focused(question), "the question in focus")
        self.go_to("button", "Delete", question)
        self.desktop.type("space")
        wait_until(lambda: self.has("combo box", "Saved presets").get_name() == "No saved presets",
                   "an empty list")

    def test_the_place_of_the_permission_is_a_dialog_that_return_closes(self):
        title = "No permission is needed in an X11 session"
        self.go_to("button", "Open Accessibility Settings")
        self.desktop.type("space")
        self.has("dialog", title)
        self.desktop.type("Return")
        wait_until(lambda: not self.find("dialog", title), "the end of the dialog")


if __name__ == "__main__":
    unittest.main(verbosity=2)
