"""Whole runs of the real program, in a real window on a screen of their own, against the demo vendor and the sample
engine. ORVANE_BUILD names the folder of the build under test, build/release unless it is set, and ORVANE_RESULTS the
folder for pictures and for what failing tests leave, build/e2e unless it is set."""

import os
import shutil
import sys
from pathlib import Path

import pytest

sys.path.insert(0, str(Path(__file__).parent))

from harness import processes  # noqa: E402
from harness.build import BUILD  # noqa: E402
from harness.display import Desktop  # noqa: E402
from harness.product import Product  # noqa: E402
from harness.rehearsal import Rehearsal  # noqa: E402

ROOT = Path(__file__).resolve().parents[2]
RESULTS = Path(os.environ.get("ORVANE_RESULTS", ROOT / "build/e2e")).resolve()


PROGRAMS = ("OrvaneBootstrap", "OrvaneBootstrapRehearsal", "VendorServer", "SampleEngine", "orvane-reports")


def pytest_addoption(parser):
    parser.addoption("--all", action="store_true", help="also run the tests that take long")


def pytest_configure(config):
    config.addinivalue_line("markers", "long: takes long, so it is run with --all only")
    # Where several processes share the tests out, the one that hands them out clears the table.
    if not hasattr(config, "workerinput"):
        shutil.rmtree(RESULTS, ignore_errors=True)


def pytest_collection_modifyitems(config, items):
    if config.getoption("--all"):
        return
    config.hook.pytest_deselected(items=[item for item in items if item.get_closest_marker("long")])
    items[:] = [item for item in items if not item.get_closest_marker("long")]


@pytest.fixture(scope="session")
def desktop():
    missing = [name for name in PROGRAMS if not (BUILD / name).exists()]
    if missing:
        pytest.exit(f"{BUILD} lacks {', '.join(missing)}: build first", returncode=pytest.ExitCode.USAGE_ERROR)
    processes.adopt_orphans()
    stage = Desktop()
    for name in ("DISPLAY", "XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS"):
        os.environ[name] = stage.variables[name]
    yield stage
    stage.close()


def _play_on(stage, node):
    """Lets the test play; one that passed must leave nothing behind, and nothing stays in any case."""
    node.stage = stage
    yield stage
    try:
        if getattr(node, "passed", False):
            stage.check_nothing_is_left()
    finally:
        stage.close()


@pytest.fixture
def rehearsal(desktop, request, tmp_path):
    """The program in a folder, against a vendor of its own."""
    yield from _play_on(Rehearsal(BUILD, desktop, tmp_path), request.node)


@pytest.fixture
def product(desktop, request, tmp_path):
    """The product at its fixed places, inside a namespace."""
    if os.geteuid() != 0:
        pytest.skip("only root can give the product a namespace in which to find its fixed places")
    yield from _play_on(Product(BUILD, desktop, tmp_path), request.node)


@pytest.fixture
def run(rehearsal):
    """A run whose engine only waits, while the test speaks in its place."""
    rehearsal.scenario("step Prêt", "progress 10", "wait-interrupt")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.window.await_step("Prêt")
    run.window.await_progress(10)
    return run


@pytest.fixture
def picture(desktop):
    """Keeps a picture of the screen for people to look at, under build/e2e/pictures."""
    return lambda name: desktop.picture(RESULTS / "pictures" / f"{name}.png")


@pytest.fixture
def results():
    """The folder for what people are to look at."""
    return RESULTS


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    report = (yield).get_result()
    if call.when != "call":
        return
    item.passed = report.passed
    stage = getattr(item, "stage", None)
    if report.failed and stage:
        _keep_evidence(stage, RESULTS / "failures" / item.name)


def _keep_evidence(stage, folder):
    """What the screen showed when the test failed, and what was said and served until then."""
    folder.mkdir(parents=True, exist_ok=True)
    stage.desktop.picture(folder / "screen.png")
    (folder / "ends").write_text("\n".join(run.end_so_far() for run in stage.runs))
    for file in [*stage.folder.glob("std*"), *stage.folder.glob("*/*.log"), *stage.log_root.glob("*/*")]:
        if file.is_file():
            shutil.copy(file, folder / f"{file.parent.name} {file.name}")
