"""What people with tired eyes need: texts and bar stand out from their ground, whatever the desktop's colours, and it
is seen what has the keyboard. Measured on the screen."""

import pytest
from harness.pixels import contrast
from harness.texts import French
from harness.waiting import eventually

TITLE = "Varlen"
GROUND = (0x00, 0x5F, 0x8A)
WHITE = (0xFF, 0xFF, 0xFF)
TEXT_CONTRAST = 4.5
SHAPE_CONTRAST = 3

DESKTOPS = pytest.mark.parametrize("dark", [False, True], ids=["light", "dark"])


@pytest.fixture
def run(rehearsal, desktop, dark):
    rehearsal.scenario("progress 50", "step Copie des fichiers", "error Le modèle existe déjà", "wait-interrupt")
    rehearsal.vendor_with_engine()
    run = rehearsal.start(variables=desktop.dark() if dark else {})
    run.window.await_error("Le modèle existe déjà")
    run.window.await_focus(French.cancel)
    return run


@pytest.fixture
def seen(desktop, run):
    """The pixels of a control; `inset` leaves out its border."""
    def pixels(name, role=None, inset=0):
        left, top, right, bottom = run.window.area_of(name, role)
        return desktop.pixels((left + inset, top + inset, right - inset, bottom - inset))

    return pixels


def end(run):
    run.send(3, "0")
    assert run.status() == 0


@DESKTOPS
def test_the_windows_texts_stand_out_from_its_ground(run, seen, picture, dark):
    picture(f"looks-window-{'dark' if dark else 'light'}")
    for text in ("Copie des fichiers", "Le modèle existe déjà"):
        pixels = seen(text, "label")
        assert pixels.ground() == GROUND
        assert WHITE in pixels.counts()
        assert pixels.contrast() >= TEXT_CONTRAST
    assert seen(French.cancel, inset=6).contrast() >= TEXT_CONTRAST
    end(run)


@DESKTOPS
def test_the_bar_stands_out_from_its_ground_whether_done_or_not(run, seen):
    bar = seen("Copie des fichiers", "progress bar")
    middle = bar.height // 2
    done, to_do = bar.part(0, middle, bar.width // 2 - 2, middle + 1), bar.part(bar.width // 2 + 2, 0, bar.width, 1)
    assert done.ground() == WHITE
    assert bar.at(bar.width * 3 // 4, middle) == GROUND, "what is not done yet looks done"
    assert contrast(to_do.ground(), GROUND) >= SHAPE_CONTRAST
    end(run)


@DESKTOPS
def test_it_is_seen_whether_cancel_has_the_keyboard(run, seen):
    with_keyboard = seen(French.cancel)
    run.window.press(French.cancel)
    run.window.await_focus(French.no)
    eventually(lambda: seen(French.cancel) != with_keyboard, "the ring's end")
    without_keyboard = seen(French.cancel)
    ring = [(x, with_keyboard.height // 2) for x in range(8)]
    assert max(contrast(with_keyboard.at(*point), without_keyboard.at(*point)) for point in ring) >= SHAPE_CONTRAST
    run.window.press(French.no)
    run.window.await_no_alert()
    end(run)


@DESKTOPS
def test_a_disabled_cancel_is_still_legible(run, seen):
    run.send(6, "0")
    run.window.await_cancel(enabled=False)
    eventually(lambda: seen(French.cancel, inset=6).ground() == GROUND, "the button without its face")
    assert seen(French.cancel, inset=6).contrast() >= SHAPE_CONTRAST
    end(run)


@DESKTOPS
def test_an_alerts_texts_stand_out_from_their_ground(desktop, run, seen, picture, dark):
    run.window.press(French.cancel)
    run.window.await_alert(French.abort_installation)
    run.window.await_focus(French.no)
    picture(f"looks-alert-{'dark' if dark else 'light'}")
    message = seen(French.abort_installation, "label")
    assert (sum(message.ground()) < 3 * 128) == dark, "the alert does not follow the desktop's colours"
    assert message.contrast() >= TEXT_CONTRAST
    for title in (French.no, French.yes):
        assert seen(title, inset=6).contrast() >= TEXT_CONTRAST
    run.window.press(French.yes)
    assert run.status() == 2


@pytest.mark.parametrize("dark", [False])
def test_the_window_bears_its_title_and_an_icon_of_each_usual_size(desktop, run):
    assert desktop.window_property(TITLE, "_NET_WM_NAME") == '_NET_WM_NAME = "Varlen"\n'
    icons = desktop.window_property(TITLE, "_NET_WM_ICON")
    for size in (16, 24, 32, 48, 64, 128):
        assert f"Icon ({size} x {size})" in icons
    end(run)
