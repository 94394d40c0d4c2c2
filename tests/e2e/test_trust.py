"""Whom the product believes: vendors with every kind of wrong certificate, an old protocol, a name nobody knows."""

import pytest
from harness.product import API_HOST, DOWNLOAD_ORIGIN
from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE, ENGINE_PATH, REPORT

UNABLE = "Unable to download orvane: "
UNABLE_TO_DESCRIBE = "Unable to download orvane file description: "
SECOND_PORT = "444"
FLAWS = [("--certificate", "expired"), ("--certificate", "self-signed"), ("--certificate", "wrong-host"),
         ("--tls", "1.1")]
REASONS = {"expired": "expired", "self-signed": "self-signed", "wrong-host": "no alternative certificate subject name",
           "1.1": "protocol version"}


def flaw_name(flaw):
    return " ".join(flaw).removeprefix("--")


def end_without_a_way_round(run):
    """The advice on connections has one button, and that ends the run."""
    assert run.window.await_alert(French.no_connection).buttons == ("OK",)
    run.window.press("OK")
    assert run.status() == 1


def lines_of(run, beginning):
    return [line for line in run.log() if line.startswith(beginning)]


@pytest.mark.parametrize("flaw", FLAWS, ids=flaw_name)
def test_the_product_sends_nothing_to_an_api_host_that_it_does_not_believe(product, flaw):
    vendor = product.vendor(*flaw)
    vendor.publish(product.sample_engine, origin=DOWNLOAD_ORIGIN)
    product.namespace.trust(vendor.folder / "ca.pem")
    run = product.start()
    end_without_a_way_round(run)
    assert vendor.requests() == []
    [line] = lines_of(run, UNABLE_TO_DESCRIBE)
    assert REASONS[flaw[1]] in line
    assert not product.engine_path.exists()


@pytest.mark.parametrize("flaw", FLAWS, ids=flaw_name)
def test_the_product_asks_nothing_of_a_download_host_that_it_does_not_believe(product, flaw):
    vendor = product.vendor()
    impostor = product.vendor("--port", SECOND_PORT, *flaw, name="impostor")
    vendor.publish(product.sample_engine, origin=f"{DOWNLOAD_ORIGIN}:{SECOND_PORT}")
    product.namespace.trust(vendor.folder / "ca.pem")
    product.namespace.trust(impostor.folder / "ca.pem")
    run = product.start()
    product.acknowledge(run, French.no_connection)
    assert vendor.requests() == [DESCRIPTION, REPORT]
    assert impostor.requests() == []
    [line] = lines_of(run, UNABLE)
    assert REASONS[flaw[1]] in line
    assert product.engine_path.read_bytes() == b""


def test_the_product_believes_the_same_vendor_without_a_flaw_and_follows_it_to_another_host(product):
    """What the tests above show not to happen does happen here."""
    product.scenario("end 0")
    vendor = product.vendor()
    mirror = product.vendor("--port", SECOND_PORT, name="mirror")
    vendor.publish(product.sample_engine, origin=DOWNLOAD_ORIGIN)
    vendor.set_faults({ENGINE_PATH: {"redirect": f"{DOWNLOAD_ORIGIN}:{SECOND_PORT}{ENGINE_PATH}"}})
    mirror.publish(product.sample_engine)
    product.namespace.trust(vendor.folder / "ca.pem")
    product.namespace.trust(mirror.folder / "ca.pem")
    assert product.start().status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]
    assert mirror.requests() == [ENGINE]


def test_without_the_api_hosts_name_the_product_ends_with_the_advice_on_connections(product):
    (product.folder / "hosts").write_text("127.0.0.1 localhost\n")
    run = product.start()
    end_without_a_way_round(run)
    [line] = lines_of(run, UNABLE_TO_DESCRIBE)
    assert f"Could not resolve host: {API_HOST}" in line


def test_a_download_host_whose_name_nobody_knows(product):
    vendor = product.vendor()
    vendor.publish(product.sample_engine, origin="https://elsewhere.invalid")
    product.namespace.trust(vendor.folder / "ca.pem")
    run = product.start()
    product.acknowledge(run, French.no_connection)
    assert vendor.requests() == [DESCRIPTION, REPORT]
    assert lines_of(run, UNABLE) == [f"{UNABLE}Could not resolve host: elsewhere.invalid"]
