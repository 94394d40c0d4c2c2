"""Proxies of the environment: used for everything, and never gone around."""

import pytest
from harness.servers import Proxy
from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE, REPORT

BODY = b"no program"
UNABLE_TO_DESCRIBE = "Unable to download orvane file description: "

HIDDEN_HOST = "vendor.example"  # which only a proxy finds


def hidden_vendor(rehearsal):
    vendor = rehearsal.vendor("--host", HIDDEN_HOST)
    rehearsal.api_origin = vendor.origin.replace("localhost", HIDDEN_HOST)
    vendor.publish(rehearsal.sample_engine, origin=rehearsal.api_origin)
    return vendor


def tunnel_to(rehearsal):
    return "CONNECT " + rehearsal.api_origin.removeprefix("https://")


@pytest.mark.parametrize("variable", ["https_proxy", "HTTPS_PROXY", "all_proxy"])
def test_everything_goes_through_the_proxy_of_the_environment(rehearsal, variable):
    rehearsal.scenario("end 0")
    vendor = hidden_vendor(rehearsal)
    with Proxy(port=vendor.port) as proxy:
        assert rehearsal.start(variables={variable: proxy.url}).status() == 0
        assert proxy.requests == [tunnel_to(rehearsal)] * 2
    assert vendor.requests() == [DESCRIPTION, ENGINE]


def test_the_crash_report_goes_through_the_proxy_too(rehearsal):
    vendor = hidden_vendor(rehearsal)
    vendor.publish(BODY, version="15.0")
    with Proxy(port=vendor.port) as proxy:
        run = rehearsal.start(variables={"https_proxy": proxy.url})
        rehearsal.acknowledge(run, French.too_old)
        assert proxy.requests == [tunnel_to(rehearsal)] * 2
    assert vendor.requests() == [DESCRIPTION, REPORT]


PROXY_REFUSES = (b"HTTP/1.1 407 Proxy Authentication Required\r\nProxy-Authenticate: Basic realm=\"proxy\"\r\n"
                 b"Content-Length: 0\r\nConnection: close\r\n\r\n")


def test_a_proxy_that_wants_a_password_is_named_in_the_log_and_not_gone_around(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    with Proxy(refusal=PROXY_REFUSES) as proxy:
        run = rehearsal.start(variables={"https_proxy": proxy.url})
        rehearsal.acknowledge(run, French.no_connection, reported=False)
        assert proxy.requests[0] == "CONNECT " + vendor.origin.removeprefix("https://")
    assert vendor.requests() == []
    [line] = [line for line in run.log() if line.startswith(UNABLE_TO_DESCRIBE)]
    assert "407" in line


def test_a_proxy_that_is_not_there_is_named_in_the_log_and_not_gone_around(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    run = rehearsal.start(variables={"https_proxy": "http://127.0.0.1:1"})
    rehearsal.acknowledge(run, French.no_connection, reported=False)
    assert vendor.requests() == []
    [line] = [line for line in run.log() if line.startswith(UNABLE_TO_DESCRIBE)]
    assert "127.0.0.1 port 1" in line


def test_a_proxy_cannot_read_along_with_a_certificate_of_its_own(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    impostor = rehearsal.vendor(name="impostor")
    impostor.publish(rehearsal.sample_engine)
    with Proxy(port=impostor.port) as proxy:
        run = rehearsal.start(variables={"https_proxy": proxy.url})
        rehearsal.acknowledge(run, French.no_connection, reported=False)
        assert proxy.requests
    assert vendor.requests() == impostor.requests() == []


def test_a_host_that_no_proxy_serves_is_asked_directly(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    run = rehearsal.start(variables={"https_proxy": "http://127.0.0.1:1", "no_proxy": "localhost"})
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]
