"""The package as scripts/test-package has just made it, tried on a bare system."""

import os
import shutil
import subprocess
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests/e2e"), str(ROOT / "scripts"), str(Path(__file__).parent)]

from bare_system import provide_system  # noqa: E402
from harness import processes  # noqa: E402
from harness.display import Desktop  # noqa: E402
from installed_product import InstalledProduct  # noqa: E402

BARE = ROOT / "build/bare-system"


@pytest.fixture(scope="session")
def package():
    [file] = (ROOT / "build/packages").glob("*.deb")
    return file


@pytest.fixture(scope="session")
def desktop():
    processes.adopt_orphans()
    stage = Desktop()
    for name in ("DISPLAY", "XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS"):
        os.environ[name] = stage.variables[name]
    yield stage
    stage.close()


@pytest.fixture(scope="session")
def system(package):
    """The base and what the package depends on."""
    folder = BARE / "system"
    shutil.rmtree(folder, ignore_errors=True)
    dependencies = subprocess.run(["dpkg-deb", "--field", package, "Depends"], check=True, stdout=subprocess.PIPE,
                                  text=True, timeout=60).stdout.strip()
    provide_system(folder, BARE / "base.tar", BARE / "archives", dependencies)
    yield folder
    shutil.rmtree(folder)


@pytest.fixture
def bare_product(desktop, system, package, tmp_path):
    """A machine on which the package is not yet installed."""
    copy = shutil.copy(package, tmp_path)
    stage = InstalledProduct(ROOT / "build/release", desktop, tmp_path, system, copy)
    yield stage
    stage.close()


@pytest.fixture
def product(bare_product):
    bare_product.install()
    bare_product.consent()
    return bare_product
