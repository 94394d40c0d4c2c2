"""The command with which a newcomer sees a whole installation."""

import os
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
DISPLAYS = ("DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS")
PATIENCE_SECONDS = 300


def test_one_command_shows_a_whole_run_and_ends_with_its_status(rehearsal):
    if rehearsal.build != ROOT / "build/release":
        pytest.skip("scripts/run builds and runs build/release")
    environment = {name: value for name, value in os.environ.items() if name not in DISPLAYS}
    run = subprocess.run([ROOT / "scripts/run", "--scenario", "stop"], env=environment, stdin=subprocess.DEVNULL,
                         capture_output=True, text=True, timeout=PATIENCE_SECONDS, check=False)
    assert run.returncode == 2, run.stdout + run.stderr
    assert run.stdout.endswith("run: exit status 2\n")
    assert (ROOT / "build/run/start.png").is_file()
