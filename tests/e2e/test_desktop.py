"""What the program takes from the desktop it is started on, and what it leaves there."""

import os
import shutil
import signal
from pathlib import Path

import pytest
from harness import processes
from harness.display import Desktop
from harness.texts import French
from harness.vendor import REPORT_PATH
from harness.waiting import eventually

TITLE = "Varlen"
GROUND = (0x00, 0x5F, 0x8A)
WHITE = (0xFF, 0xFF, 0xFF)
BODY = bytes(range(256)) * 4096  # 1 MiB that is no program


@pytest.fixture
def managed_desktop():
    """Beside the tests' common desktop one with a window manager, which decides when a window is shown."""
    stage = Desktop()
    stage.start_window_manager()
    yield stage
    os.kill(stage.window_manager, signal.SIGCONT)
    stage.close()


def test_a_window_that_nobody_ever_sees_keeps_no_run_from_its_end(rehearsal, managed_desktop):
    rehearsal.desktop = managed_desktop
    rehearsal.scenario("end 0")
    rehearsal.vendor_with_engine()
    processes.halt(managed_desktop.window_manager)
    run = rehearsal.start()
    assert run.status() == 0
    os.kill(managed_desktop.window_manager, signal.SIGCONT)


def test_under_a_window_manager_the_window_is_painted_before_a_crash_report_holds_it_up(rehearsal, managed_desktop):
    rehearsal.desktop = managed_desktop
    vendor = rehearsal.vendor()
    vendor.publish(BODY, served=b"<html>a page</html>")
    vendor.set_faults({REPORT_PATH: {"stallAfterBytes": 0}})
    processes.halt(managed_desktop.window_manager)
    run = rehearsal.start()
    eventually(lambda: managed_desktop.has_window(TITLE), "the window, still unseen")
    assert vendor.requests() == [], "the decision waits until the window is seen"
    os.kill(managed_desktop.window_manager, signal.SIGCONT)
    eventually(lambda: REPORT_PATH in "".join(vendor.requests()), "the crash report")
    seen = managed_desktop.pixels(managed_desktop.window_area(TITLE))
    managed_desktop.picture(rehearsal.folder / "painted.png")
    assert run.is_running()
    assert seen.ground() == GROUND
    assert WHITE in seen.part(0, 0, seen.width, seen.height // 2).counts(), "the step is painted"
    vendor.release()
    run.kill()


def processes_named(mark, *names):
    commands = {process: Path(f"/proc/{process}/comm") for process in processes.marked(mark)}
    return [process for process, file in commands.items() if file.exists() and file.read_text().strip() in names]


def test_without_a_session_bus_none_is_started_and_the_engine_finds_its_environment_as_it_was(rehearsal):
    rehearsal.scenario(f"record {rehearsal.mark_of('engine')}", "wait-owner-gone")
    rehearsal.vendor_with_engine()
    runtime = rehearsal.folder / "runtime"
    runtime.mkdir()
    run = rehearsal.start(variables={"XDG_RUNTIME_DIR": str(runtime)}, through=["env", "-u", "DBUS_SESSION_BUS_ADDRESS"])
    environment = rehearsal.record("engine")["environment"]
    assert "DBUS_SESSION_BUS_ADDRESS" not in environment
    assert "QT_PLUGIN_PATH" not in environment
    assert processes_named(rehearsal.mark, "dbus-launch", "dbus-daemon") == []
    run.kill()


def test_neither_a_qt_conf_nor_plugins_beside_the_program_are_obeyed(rehearsal):
    folder = rehearsal.folder / "program"
    folder.mkdir()
    program = shutil.copy(rehearsal.build / rehearsal.program_name, folder)
    (folder / "qt.conf").write_text(f"[Paths]\nPrefix={folder}/elsewhere\nPlugins={folder}/elsewhere\n")
    (folder / "qt6.conf").write_text(f"[Paths]\nPrefix={folder}/elsewhere\nPlugins={folder}/elsewhere\n")
    for kind in ("platforms", "platformthemes", "styles", "imageformats", "accessiblebridge"):
        (folder / kind).mkdir()
        (folder / kind / "libplugin.so").write_bytes(b"\x7fELF")
    rehearsal.scenario("step Prêt", "wait-owner-gone")
    rehearsal.vendor_with_engine()
    rehearsal.prepare()
    run = rehearsal.run_program([program], rehearsal.variables() | {"QT_DEBUG_PLUGINS": "1"})
    run.window.await_step("Prêt")
    assert "checking directory path" in run.errors(), "the toolkit reports no plugin folder that it looks into"
    assert str(folder) not in run.errors()
    run.kill()


SMALL = (800, 600)


def is_on(stage, screen):
    """Whether all of the window on top is on the screen."""
    left, top, right, bottom = stage.window_area(TITLE)
    return left >= 0 and top >= 0 and right <= screen[0] and bottom <= screen[1]


@pytest.fixture
def small_screen():
    stage = Desktop(f"{SMALL[0]}x{SMALL[1]}x24")
    stage.start_window_manager()
    yield stage
    stage.close()


def test_window_and_alert_fit_a_small_screen_at_scale_2(rehearsal, small_screen):
    fatal = "Le disque est plein. " * 60
    rehearsal.scenario("step " + "Installation des composants " * 8, "error " + "Le modèle existe déjà " * 20,
                       "progress 40", rehearsal.gate("seen"), f"fatal {fatal}")
    rehearsal.vendor_with_engine()
    run = rehearsal.start(variables={"DISPLAY": small_screen.variables["DISPLAY"], "QT_SCALE_FACTOR": "2"})
    run.window.await_progress(40)
    run.window.await_focus(French.cancel)
    assert is_on(small_screen, SMALL)
    rehearsal.open_gate("seen")
    run.window.await_alert(fatal)
    assert is_on(small_screen, SMALL)
    run.window.press("OK")
    assert run.status() == 1
