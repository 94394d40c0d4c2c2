"""What a user of assistive technology perceives of the program, its window and its alerts, and can press there."""

from dataclasses import dataclass

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from .waiting import eventually, eventually_equal  # noqa: E402


@dataclass(frozen=True)
class MainView:
    step: str
    error: str
    progress: float
    cancel: str
    cancel_enabled: bool


@dataclass(frozen=True)
class AlertView:
    text: str
    buttons: tuple


@dataclass(frozen=True)
class View:
    """One look: the main window, if it is on the screen, and the alerts."""
    main: MainView | None
    alerts: tuple


NOTHING = View(None, ())


class Window:
    """The windows of one process."""

    def __init__(self, process):
        self._process = process

    def look(self):
        try:
            return self._look()
        except GLib.Error:
            # Something went away between two questions about it: not a picture of any moment.
            return NOTHING

    def main(self):
        """The main window, once it is on the screen with its first texts."""
        return eventually(lambda: (view := self.look().main) and view.step and view, "the main window")

    def await_step(self, text):
        self._await("step", text)

    def await_error(self, text):
        self._await("error", text)

    def await_progress(self, value):
        self._await("progress", value)

    def await_progress_beyond(self, value):
        eventually(lambda: (view := self.look().main) and view.progress > value, f"progress beyond {value}")

    def await_cancel(self, title=None, enabled=None):
        if title is not None:
            self._await("cancel", title)
        if enabled is not None:
            self._await("cancel_enabled", enabled)

    def await_alert(self, text):
        """The alert that carries this text, once it is on the screen with its buttons."""
        seen = []

        def found():
            seen[:] = self.look().alerts
            return next((alert for alert in seen if alert.text == text and alert.buttons), None)

        try:
            return eventually(found, f"the alert {text!r}")
        except AssertionError as error:
            raise AssertionError(f"{error}\n  last were {seen}") from None

    def await_no_alert(self):
        """Nothing but the main window."""
        eventually(lambda: (view := self.look()).main and not view.alerts, "the end of the alert")

    def press(self, title, times=1, alert=None):
        """Presses the button of that title: an alert's if one has it, else the main window's. `alert` is the text of
        the one that is meant, where several stand."""
        button = eventually(lambda: self._button(title, alert), f"the button {title!r}")
        for _ in range(times):
            button.do_action(0)

    def press_in_vain(self, title, alert=None):
        """Presses a button of a window that stays, and waits until the button has come up again."""
        button = eventually(lambda: self._button(title, alert), f"the button {title!r}")
        button.do_action(0)
        eventually(lambda: not _is_pressed(button), f"the button {title!r} to come up again")

    def controls(self):
        """Role and name of each control of the main window, from top to bottom."""
        frame = next(window for window in self._windows() if window.get_role() != Atspi.Role.DIALOG)
        return [(node.get_role_name(), node.get_name()) for node in _nodes(frame)
                if _is_showing(node) and node.get_role() != Atspi.Role.FILLER]

    def focused(self):
        """The name of what has the keyboard."""
        try:
            return next((node.get_name() for window in self._windows() if _has(window, Atspi.StateType.ACTIVE)
                         for node in _nodes(window) if _has(node, Atspi.StateType.FOCUSED)), None)
        except GLib.Error:
            return None

    def await_focus(self, name):
        eventually_equal(self.focused, name, "what has the keyboard")

    def area_of(self, name, role=None):
        """Left, top, right and bottom, on the screen, of the control of that name."""
        return eventually(lambda: self._area_of(name, role), f"the control {name!r}")

    def children_beyond_the_last(self):
        """What is answered to somebody whose count of a node's children is out of date."""
        nodes = [node for window in self._windows() for node in (window, *_nodes(window))]
        return [child for node in nodes for index in (-1, len(_children(node)), 1000)
                if (child := node.get_child_at_index(index))]

    def alert_size(self):
        """Width and height of the alert on the screen."""
        alert = next(window for window in self._windows() if window.get_role() == Atspi.Role.DIALOG)
        left, top, right, bottom = _extents(alert)
        return right - left, bottom - top

    def overflowing(self):
        """The names of everything that reaches beyond its window."""
        return [node.get_name() or node.get_role_name() for window in self._windows() for node in _nodes(window)
                if _is_showing(node) and not _lies_within(_extents(node), _extents(window))]

    def _await(self, field, expected):
        eventually_equal(lambda: getattr(self.look().main, field, None), expected, f"the window's {field}")

    def _windows(self):
        desktop = Atspi.get_desktop(0)
        desktop.clear_cache()
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            if application is not None and application.get_process_id() == self._process:
                return [window for window in _children(application) if _is_showing(window)]
        return []

    def _look(self):
        main = None
        alerts = []
        for window in self._windows():
            nodes = list(_nodes(window))
            if window.get_role() == Atspi.Role.DIALOG:
                alerts.append(_alert_view(nodes))
            else:
                main = _main_view(nodes)
        return View(main, tuple(alerts))

    def _button(self, title, alert=None):
        try:
            windows = sorted(self._windows(), key=lambda window: window.get_role() != Atspi.Role.DIALOG)
            for nodes in map(list, map(_nodes, windows)):
                if alert in (None, _alert_view(nodes).text):
                    for node in _with_role(nodes, Atspi.Role.PUSH_BUTTON):
                        if node.get_name() == title:
                            return node
        except GLib.Error:
            pass
        return None

    def _area_of(self, name, role):
        try:
            return next((_extents(node) for window in self._windows() for node in _nodes(window)
                         if _is_showing(node) and node.get_name() == name
                         and role in (None, node.get_role_name())), None)
        except GLib.Error:
            return None


def _children(node):
    node.clear_cache()
    return [child for index in range(node.get_child_count()) if (child := node.get_child_at_index(index))]


def _nodes(node):
    """Everything below, depth first."""
    for child in _children(node):
        yield child
        yield from _nodes(child)


def _has(node, state):
    return node.get_state_set().contains(state)


def _is_showing(node):
    node.clear_cache()
    return _has(node, Atspi.StateType.SHOWING)


def _is_pressed(node):
    node.clear_cache()
    return _has(node, Atspi.StateType.PRESSED)


def _extents(node):
    area = node.get_extents(Atspi.CoordType.SCREEN)
    return area.x, area.y, area.x + area.width, area.y + area.height


def _lies_within(inner, outer):
    return outer[0] <= inner[0] and outer[1] <= inner[1] and inner[2] <= outer[2] and inner[3] <= outer[3]


def _with_role(nodes, role):
    return [node for node in nodes if node.get_role() == role]


def _main_view(nodes):
    labels = _with_role(nodes, Atspi.Role.LABEL)
    bars = _with_role(nodes, Atspi.Role.PROGRESS_BAR)
    buttons = _with_role(nodes, Atspi.Role.PUSH_BUTTON)
    if len(labels) != 2 or len(bars) != 1 or len(buttons) != 1:
        return None
    return MainView(step=labels[0].get_name(), error=labels[1].get_name(),
                    progress=bars[0].get_current_value(),
                    cancel=buttons[0].get_name(), cancel_enabled=_has(buttons[0], Atspi.StateType.ENABLED))


def _alert_view(nodes):
    texts = [label.get_name() for label in _with_role(nodes, Atspi.Role.LABEL)]
    buttons = [button.get_name() for button in _with_role(nodes, Atspi.Role.PUSH_BUTTON)]
    return AlertView(text="\n".join(text for text in texts if text), buttons=tuple(buttons))
