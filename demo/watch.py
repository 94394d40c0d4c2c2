#!/usr/bin/python3
"""Watches a rehearsal's window in place of a person: keeps a picture of each stage and answers what it is asked.

It looks at nothing but the accessibility tree, as a screen reader does. Stages: "start" when the window stands,
"consent" when an uninstallation asks whether to begin, "download" half-way, "step" while the engine works, "question"
when it asks whether to restart, and "end", the last sight of the run.
"""

import argparse
import subprocess
import sys
import time
from dataclasses import dataclass
from pathlib import Path

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  (the version must be chosen first)

INTERVAL = 0.1  # seconds between two looks
HALF_WAY = 50
AFFIRMATIVE = ("Oui", "Ja", "Yes", "OK")
ALERT_ROLES = (Atspi.Role.ALERT, Atspi.Role.DIALOG)


@dataclass(frozen=True)
class Sight:
    """What the window shows at one moment; an alert hides what lies behind it."""

    texts: tuple = ()
    progress: float = 0.0
    alert: tuple = ()


def application(process):
    desktop = Atspi.get_desktop(0)
    desktop.clear_cache()
    for index in range(desktop.get_child_count()):
        child = desktop.get_child_at_index(index)
        if child and child.get_process_id() == process:
            return child
    return None


def showing(node):
    """All visible nodes of a tree, parents before children."""
    node.clear_cache()
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child and child.get_state_set().contains(Atspi.StateType.SHOWING):
            yield child
            yield from showing(child)


def alert_in(nodes):
    return next((node for node in nodes if node.get_role() in ALERT_ROLES), None)


def buttons_of(alert):
    return [node for node in showing(alert) if node.get_role() == Atspi.Role.PUSH_BUTTON]


def sight_of(nodes):
    alert = alert_in(nodes)
    if alert:
        return Sight(alert=tuple(button.get_name() for button in buttons_of(alert)))
    texts = tuple(node.get_name() for node in nodes if node.get_role() == Atspi.Role.LABEL)
    bars = [node for node in nodes if node.get_role() == Atspi.Role.PROGRESS_BAR]
    return Sight(texts, Atspi.Value.get_current_value(bars[0]) if bars else 0.0)


class Watch:
    """Follows one run from stage to stage."""

    def __init__(self, pictures):
        self.pictures = pictures
        self.taken = set()
        self.first_texts = None
        self.previous = None

    def see(self, nodes):
        sight = sight_of(nodes)
        if sight == self.previous or not (sight.alert or any(sight.texts)):
            return
        self.previous = sight
        if sight.alert:
            self.answer(alert_in(nodes))
        else:
            self.follow(sight)

    def follow(self, sight):
        if self.first_texts is None:
            self.first_texts = sight.texts
            self.take("start")
        elif sight.texts == self.first_texts and "step" not in self.taken:
            if sight.progress >= HALF_WAY and "download" not in self.taken:
                self.take("download")
        else:
            early = sight.progress < HALF_WAY and "question" not in self.taken
            self.take("end", *(["step"] if early or "step" not in self.taken else []))

    def answer(self, alert):
        buttons = buttons_of(alert)
        if len(buttons) == 1:
            stage = "end"
        else:
            stage = "question" if "start" in self.taken else "consent"
        self.take(stage)
        chosen = next(button for button in buttons if button.get_name() in AFFIRMATIVE)
        Atspi.Action.do_action(chosen, 0)

    def take(self, *stages):
        self.taken.update(stages)
        picture = subprocess.run(["import", "-window", "root", "png:-"], check=True, stdout=subprocess.PIPE).stdout
        for stage in stages:
            partial = self.pictures / f"{stage}.partial"
            partial.write_bytes(picture)
            partial.replace(self.pictures / f"{stage}.png")


def runs(process):
    try:
        return Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[0] not in ("Z", "X")
    except FileNotFoundError:
        return False


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--process", type=int, required=True, help="identifier of the rehearsal's process")
    parser.add_argument("--pictures", type=Path, required=True, help="folder for the pictures")
    options = parser.parse_args()

    watch = Watch(options.pictures)
    while runs(options.process):
        try:
            found = application(options.process)
            if found:
                watch.see(list(showing(found)))
        except GLib.Error:
            pass  # what was just being looked at has gone
        time.sleep(INTERVAL)
    return 0


if __name__ == "__main__":
    sys.exit(main())
