"""Texts as nobody should send them: the window keeps its size and its shape, and everything stays readable."""

import pytest

LONGEST = 4095
TITLE = "Varlen"
MARGIN = 24


def longest(piece):
    """As often as it fits into a message."""
    return piece * (LONGEST // len(piece.encode()))


OVERHANG = 8  # into the margins, for letters that reach beyond their own width
SCROLL_BAR = 14
GROUND = (0x00, 0x5F, 0x8A)

CONTROL_CHARACTERS = "".join(chr(code) for code in [*range(1, 32), *range(127, 160)])

TEXTS = {
    "one word": "x" * LONGEST,
    "one word of wide letters": "W" * LONGEST,
    "one letter with marks": "e" + longest("\u0301")[:(LONGEST - 1) // 2],
    "many letters with marks": longest("a\u0301\u0323\u0489"),
    "right to left": longest("שלום עולם "),
    "right to left in one word": longest("العربية"),
    "both directions": longest("Datei דוגמה.txt "),
    "bidirectional overrides": longest("\u202eexe.txt\u2066\u2067"),
    "nothing but overrides": longest("\u202e"),
    "control characters": longest("mot" + CONTROL_CHARACTERS),
    "line breaks": longest("\n"),
    "tabulators": longest("\t"),
    "markup": longest("<b>&amp;<img src='http://localhost:1/x'><a href=\"file:///\">"),
    "formats": longest("%n%s%1$n%99999d{0}"),
    "no width": longest("\u200b\u2060\ufeff"),
    "joined figures": longest("\U0001F468\u200d"),
    "a letter as wide as a sentence": longest("\ufdfa"),
    "ideographs": longest("漢字"),
}


@pytest.fixture(params=[["dejavu"], ["dejavu", "noto"]], ids=["few fonts", "many fonts"])
def run(rehearsal, desktop, request):
    rehearsal.scenario("progress 30", "step Avant", "error Avant", "wait-owner-gone")
    rehearsal.vendor_with_engine()
    run = rehearsal.start(variables=desktop.fonts(*request.param))
    run.window.await_step("Avant")
    run.window.await_error("Avant")
    return run


def frame_and_controls(window, bar_top):
    """All that no text may touch: the window's margins, and the bar with all below it."""
    return [window.part(0, 0, window.width, MARGIN), window.part(0, 0, MARGIN - OVERHANG, window.height),
            window.part(window.width - MARGIN + OVERHANG, 0, window.width, window.height),
            window.part(0, bar_top, window.width, window.height)]


def texts_edges(window, bar_top):
    """The colours of the outermost columns of the texts' place, where a line that does not wrap would be cut off."""
    columns = [MARGIN - OVERHANG, window.width - MARGIN + OVERHANG - SCROLL_BAR - 1]
    return [set(window.part(x, MARGIN, x + 1, bar_top).counts()) for x in columns]


@pytest.mark.parametrize("text", TEXTS.values(), ids=TEXTS.keys())
def test_no_text_moves_or_spoils_the_window_or_its_alert(rehearsal, desktop, picture, request, run, text):
    area = desktop.window_area(TITLE)
    bar_top = run.window.area_of("Avant", "progress bar")[1] - area[1]
    before = desktop.pixels(area)
    run.send(4, text)
    run.window.await_error(text)
    run.send(1, text)
    run.window.await_step(text)
    picture(f"text-{request.node.callspec.id.replace(' ', '-')}")
    after = desktop.pixels(area)

    assert desktop.window_area(TITLE) == area
    assert frame_and_controls(after, bar_top) == frame_and_controls(before, bar_top)
    assert texts_edges(after, bar_top) == [{GROUND}, {GROUND}], "a line is cut off at an edge"
    run.send(3, text)
    run.window.await_alert(text)
    width, height = run.window.alert_size()
    assert width < 800 and height < 1000
    desktop.type_keys(TITLE, "Return")
    assert run.status() == 1


@pytest.mark.parametrize("marks", ["\u0301" * 6, "\u0323" * 6, "\u0301\u0323\u0489"],
                         ids=["above", "below", "all around"])
def test_stacked_marks_are_cut_at_neither_edge(desktop, run, marks):
    text = f"Cha{marks}que e{marks}tape"
    run.send(1, text)
    run.window.await_step(text)
    label = desktop.pixels(run.window.area_of(text, "label"))
    assert label.contrast() > 4.5
    for edge in (label.part(0, 0, label.width, 1), label.part(0, label.height - 1, label.width, label.height)):
        assert set(edge.counts()) == {GROUND}
    run.kill()
