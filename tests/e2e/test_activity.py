"""The machine stays awake while the program runs: it asks logind, and can do without it."""

import socket

import pytest

from harness.logind import Logind, SystemBus
from harness.servers import SilentServer
from harness.texts import French
from harness.waiting import eventually

SYSTEM_BUS = "run/dbus/system_bus_socket"


@pytest.fixture
def system_bus(product):
    with SystemBus(product.namespace.root / SYSTEM_BUS, product.folder) as bus:
        yield bus


@pytest.fixture
def waiting_engine(product):
    """An engine that waits at the gate "seen" and then reports success."""
    product.scenario("step Copie", product.gate("seen"), "end 0")
    product.trusted_vendor(product.sample_engine)


def finish(product, run):
    product.open_gate("seen")
    assert run.status() == 0


def only_lock(logind):
    eventually(lambda: logind.locks, "the request for a lock")
    [lock] = logind.locks
    return lock


@pytest.mark.parametrize("options, reason", [
    ([], "Installation in progress"), (["--uninstall"], "Uninstallation in progress")])
def test_the_machine_stays_awake_until_the_program_ends(product, system_bus, waiting_engine, options, reason):
    with Logind(system_bus) as logind:
        run = product.start(*options)
        if options:
            run.window.await_alert(French.uninstallation_consent)
            assert logind.locks == []
            run.window.press(French.yes)
        run.window.await_step("Copie")
        lock = only_lock(logind)
        assert lock.request == ("sleep:idle", "OrvaneBootstrap", reason, "block")
        assert lock.is_held()
        finish(product, run)
        eventually(lambda: not lock.is_held(), "the end of the lock with the program")


def test_the_engine_does_not_inherit_the_lock(product, system_bus, waiting_engine):
    with Logind(system_bus) as logind:
        run = product.start()
        run.window.await_step("Copie")
        lock = only_lock(logind)
        assert lock.is_held()
        run.kill()
        eventually(lambda: not lock.is_held(), "the end of the lock with the program")
        product.open_gate("seen")


def test_no_variable_leads_the_product_to_another_bus(product, system_bus, waiting_engine):
    with Logind(system_bus) as logind, SilentServer(product.folder / "other") as other:
        run = product.start(variables={"DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={product.folder}/other"})
        run.window.await_step("Copie")
        assert only_lock(logind).is_held()
        assert other.connections == 0
        finish(product, run)


def test_without_a_system_bus_nothing_changes(product, waiting_engine):
    assert not (product.namespace.root / SYSTEM_BUS).exists()
    finish(product, product.start())


def test_without_logind_nothing_changes(product, system_bus, waiting_engine):
    finish(product, product.start())


def test_a_logind_that_does_not_answer_holds_nothing_up(product, system_bus, waiting_engine):
    with Logind(system_bus, is_silent=True) as logind:
        run = product.start()
        run.window.await_step("Copie")
        only_lock(logind)
        finish(product, run)


def test_a_bus_that_does_not_answer_holds_nothing_up(product, waiting_engine):
    place = product.namespace.root / SYSTEM_BUS
    place.parent.mkdir(parents=True)
    with SilentServer(place) as bus:
        run = product.start()
        run.window.await_step("Copie")
        eventually(lambda: bus.connections, "the connection to the bus")
        finish(product, run)


def test_a_bus_that_takes_no_connection_holds_nothing_up(product, waiting_engine):
    place = product.namespace.root / SYSTEM_BUS
    place.parent.mkdir(parents=True)
    with socket.socket(socket.AF_UNIX) as full, socket.socket(socket.AF_UNIX) as first:
        full.bind(str(place))
        full.listen(0)
        first.connect(str(place))
        run = product.start()
        run.window.await_step("Copie")
        finish(product, run)
