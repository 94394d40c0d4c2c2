"""What tests say to the program in an engine's place."""

import re

from harness.sources import ROOT

# Name and text of each type, at the place of its number, as the table of the sender has them.
TYPES = [(name, "".join(re.findall(r'"([^"]*)"', text))) for name, text in re.findall(
    r'EngineMessageKind\{EngineMessageType::\w+,\s*"(\w+)",\s*((?:"[^"]*"\s*)+),',
    (ROOT / "sender/EngineMessageTypes.h").read_text())]

PROGRESS, STEP, NETWORK, END, ERROR, RESTART, CANCEL = range(7)
FIRST_UNASSIGNED = len(TYPES)
LONGEST_TEXT = 4096


def after(run, *messages):
    """The main window once these messages were handled."""
    for message_type, text in messages:
        run.send(message_type, text)
    run.send(STEP, "Traité")
    run.window.await_step("Traité")
    view = run.window.main()
    run.send(STEP, "Prêt")
    run.window.await_step("Prêt")
    return view
