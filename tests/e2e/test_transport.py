"""Engine downloads over networks that break, stall, lead elsewhere or stand in between."""

import gzip

import pytest
from harness.servers import NOBODY, ScriptedServer, SilentServer
from harness.texts import French
from harness.vendor import DESCRIPTION, DESCRIPTION_PATH, ENGINE, ENGINE_PATH, REPORT
from harness.waiting import eventually

BODY = bytes(range(256)) * 4096  # 1 MiB that is no program
MEBIBYTE = 1 << 20
UNABLE = "Unable to download orvane: "
UNABLE_TO_DESCRIBE = "Unable to download orvane file description: "
LEAVING_HTTPS = ["http://{place}/engine", "ftp://{place}/engine", "file:///etc/hostname"]


def failure_in(run):
    [line] = [line for line in run.log() if line.startswith(UNABLE)]
    return line.removeprefix(UNABLE)


def end_without_connection(rehearsal, run, *requests):
    """The run ends with the advice on connections, after these requests and the report; why, says the log."""
    rehearsal.acknowledge(run, French.no_connection)
    assert rehearsal.vendors[0].requests() == [DESCRIPTION, *requests, REPORT]
    return failure_in(run)


def refusal_of(address):
    return f'The address "{address}" is refused: it does not begin with https:'


# Where the description leads.

@pytest.mark.parametrize("address", LEAVING_HTTPS + ["//{place}/engine", "{place}/engine"])
def test_an_engine_behind_another_scheme_is_asked_of_nobody(rehearsal, address):
    vendor = rehearsal.vendor()
    with SilentServer() as listener:
        url = address.format(place=f"127.0.0.1:{listener.port}")
        vendor.publish(BODY, URL=url)
        assert end_without_connection(rehearsal, rehearsal.start()) == refusal_of(url)
        assert listener.connections == 0
    assert rehearsal.engine_path.read_bytes() == b""


def test_an_enciphered_engine_behind_another_scheme_is_asked_of_nobody(rehearsal):
    rehearsal.vendor().publish(BODY, cipher="xor", URL="http://127.0.0.1:1/engine")
    assert end_without_connection(rehearsal, rehearsal.start()) == refusal_of("http://127.0.0.1:1/engine.enc")


def test_the_scheme_may_stand_in_capitals(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, URL=vendor.origin.replace("https", "HTTPS") + ENGINE_PATH)
    assert rehearsal.start().status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]


@pytest.mark.parametrize("target", LEAVING_HTTPS)
@pytest.mark.parametrize("status", [301, 307])
def test_a_download_sent_away_from_https_ends_before_anybody_else_is_asked(rehearsal, target, status):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    with SilentServer() as listener:
        place = f"127.0.0.1:{listener.port}"
        vendor.set_faults({ENGINE_PATH: {"status": status, "redirect": target.format(place=place)}})
        failure = end_without_connection(rehearsal, rehearsal.start(), ENGINE)
        assert failure == refusal_of(target.format(place=place))
        assert listener.connections == 0
    assert rehearsal.engine_path.read_bytes() == b""


@pytest.mark.parametrize("target", LEAVING_HTTPS)
def test_a_description_sent_away_from_https_is_an_error_of_the_transport(rehearsal, target):
    vendor = rehearsal.vendor()
    with SilentServer() as listener:
        address = target.format(place=f"127.0.0.1:{listener.port}")
        vendor.set_faults({DESCRIPTION_PATH: {"redirect": address}})
        run = rehearsal.start()
        rehearsal.acknowledge(run, French.no_connection)
        assert listener.connections == 0
    assert vendor.requests() == [DESCRIPTION, REPORT]
    [line] = [line for line in run.log() if line.startswith(UNABLE_TO_DESCRIBE)]
    assert line.startswith(f"{UNABLE_TO_DESCRIBE}Optional(") and refusal_of(address) in line


def test_a_second_redirect_away_from_https_is_not_followed_either(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    vendor.set_faults({ENGINE_PATH: {"redirect": "/mirror"}, "/mirror": {"redirect": "http://127.0.0.1:1/engine"}})
    failure = end_without_connection(rehearsal, rehearsal.start(), ENGINE, "GET /mirror")
    assert failure == refusal_of("http://127.0.0.1:1/engine")


def test_a_download_sent_in_a_circle_ends_after_twenty_turns(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    vendor.set_faults({ENGINE_PATH: {"redirect": "/mirror"}, "/mirror": {"redirect": ENGINE_PATH}})
    turns = [ENGINE, "GET /mirror"] * 10 + [ENGINE]
    assert "20" in end_without_connection(rehearsal, rehearsal.start(), *turns)


def test_a_download_sent_to_another_https_host_is_followed_there(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    vendor.publish_file("mirrored", rehearsal.sample_engine)
    mirror = vendor.origin.replace("localhost", "127.0.0.1")
    vendor.set_faults({ENGINE_PATH: {"redirect": f"{mirror}/varlen/setup/mirrored"}})
    assert rehearsal.start().status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE, "GET /varlen/setup/mirrored"]
    assert vendor.headers_of(ENGINE)["host"] == vendor.origin.removeprefix("https://")
    assert vendor.headers_of("GET /varlen/setup/mirrored")["host"] == mirror.removeprefix("https://")


def test_a_download_sent_to_a_host_that_is_not_believed_is_not_asked_for_there(rehearsal):
    vendor = rehearsal.vendor()
    impostor = rehearsal.vendor(name="impostor")
    vendor.publish(BODY)
    vendor.set_faults({ENGINE_PATH: {"redirect": impostor.origin + ENGINE_PATH}})
    assert "certificate" in end_without_connection(rehearsal, rehearsal.start(), ENGINE)
    assert impostor.requests() == []


# Transfers that break.

@pytest.mark.parametrize("share", [1, 50, 99])
def test_a_download_cut_off_at_any_share_keeps_what_arrived(rehearsal, share):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    arrived = len(BODY) * share // 100
    vendor.set_faults({ENGINE_PATH: {"dropAfterBytes": arrived}})
    end_without_connection(rehearsal, rehearsal.start(), ENGINE)
    assert rehearsal.engine_path.read_bytes() == BODY[:arrived]


def test_an_enciphered_download_cut_off_is_not_deciphered(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY, cipher="xor")
    vendor.set_faults({ENGINE_PATH + ".enc": {"dropAfterBytes": len(BODY) - 1}})
    end_without_connection(rehearsal, rehearsal.start(), ENGINE + ".enc")
    assert len(rehearsal.engine_path.with_name("varlen-setup.enc").read_bytes()) == len(BODY) - 1
    assert not rehearsal.engine_path.exists()


def test_a_chunked_download_cut_off_is_no_whole_one(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    vendor.set_faults({ENGINE_PATH: {"framing": "chunked", "dropAfterBytes": 300_000}})
    end_without_connection(rehearsal, rehearsal.start(), ENGINE)
    assert rehearsal.engine_path.read_bytes() == BODY[:300_000]


@pytest.mark.parametrize("fault", [{"contentLength": len(BODY) + 1},
                                   {"headers": {"Content-Encoding": "gzip"}}],
                         ids=["longer announced", "coded otherwise than it says"])
def test_a_body_that_is_not_what_its_head_says_is_an_error_of_the_transport(rehearsal, fault):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    vendor.set_faults({ENGINE_PATH: fault})
    end_without_connection(rehearsal, rehearsal.start(), ENGINE)
    assert BODY.startswith(rehearsal.engine_path.read_bytes())


def test_a_coded_body_that_breaks_off_in_its_coding_is_another_file(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY, served=gzip.compress(BODY)[:-20])
    vendor.set_faults({ENGINE_PATH: {"headers": {"Content-Encoding": "gzip"}}})
    rehearsal.acknowledge(rehearsal.start(), French.download_incorrect)
    assert vendor.requests() == [DESCRIPTION, ENGINE, REPORT]
    assert len(rehearsal.engine_path.read_bytes()) < len(BODY)


@pytest.mark.parametrize("answer", [b"", b"\0" * 1000, b"SSH-2.0-server\r\n",
                                    b"HTTP/1.1 200 OK\r\nX: " + b"x" * 200_000,
                                    b"HTTP/1.1 200 OK\r\n" + b"X: x\r\n" * 200_000,
                                    b"HTTP/1.1 200 OK\r\nContent-Length: -1\r\n\r\nengine",
                                    b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nFFFFFFFFFFFFFFFFF\r\nengine",
                                    b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n-1\r\nengine"],
                         ids=["nothing", "zeros", "another protocol", "an endless header", "endless headers",
                              "a negative length", "a chunk beyond 64 bits", "a negative chunk"])
def test_what_is_not_http_is_an_error_of_the_transport(rehearsal, answer):
    vendor = rehearsal.vendor()
    with ScriptedServer(vendor, answer) as server:
        vendor.publish(BODY, origin=server.origin)
        end_without_connection(rehearsal, rehearsal.start())
        assert server.requests == [ENGINE]


@pytest.mark.parametrize("status", [403, 404, 500, 503])
def test_an_error_page_is_taken_for_the_engine_and_found_to_be_another_file(rehearsal, status):
    page = f"<html><body><h1>{status}</h1></body></html>"
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    vendor.set_faults({ENGINE_PATH: {"status": status, "page": page}})
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.download_incorrect)
    assert vendor.requests() == [DESCRIPTION, ENGINE, REPORT]
    assert "Orvane download finished" in run.log()
    assert rehearsal.engine_path.read_text() == page


def test_the_engine_itself_is_taken_whatever_the_status(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    vendor.set_faults({ENGINE_PATH: {"status": 503}})
    assert rehearsal.start().status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]


def test_a_large_download_never_lies_in_memory_as_a_whole(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    vendor.set_faults({ENGINE_PATH: {"blanks": 256 * MEBIBYTE, "hold": True}})
    run = rehearsal.start()
    eventually(lambda: vendor.requests() == [DESCRIPTION, ENGINE], "the request")
    run.window.main()
    before = run.peak_memory()
    vendor.release()
    run.window.await_alert(French.download_incorrect)
    if not rehearsal.is_sanitized:  # a sanitizer keeps what was freed
        assert run.peak_memory() < before + 32 * MEBIBYTE
    rehearsal.acknowledge(run, French.download_incorrect)
    assert rehearsal.engine_path.stat().st_size == 256 * MEBIBYTE + len(BODY)


# Transfers that stall.

def stalled_half_way(rehearsal, vendor):
    """A run whose download has come half way and goes no further."""
    vendor.publish(BODY)
    vendor.set_faults({ENGINE_PATH: {"stallAfterBytes": len(BODY) // 2}})
    run = rehearsal.start()
    run.window.await_progress(50)
    return run


def test_the_window_answers_while_a_download_stalls_and_the_limit_ends_it(rehearsal):
    rehearsal.limits = {"downloadTimeoutSeconds": 3}
    vendor = rehearsal.vendor()
    run = stalled_half_way(rehearsal, vendor)
    run.window.press(French.cancel)
    run.window.await_alert(French.abort_installation)
    run.window.press(French.no)
    run.window.await_no_alert()
    assert run.window.main().progress == 50
    assert end_without_connection(rehearsal, run, ENGINE) == "The request timed out (localhost)"
    vendor.release()
    assert rehearsal.engine_path.read_bytes() == BODY[:len(BODY) // 2]


@pytest.mark.long
def test_30_seconds_of_silence_end_a_download_and_the_window_answers_meanwhile(rehearsal):
    vendor = rehearsal.vendor()
    run = stalled_half_way(rehearsal, vendor)
    for _ in range(10):
        run.window.press(French.cancel)
        run.window.await_alert(French.abort_installation)
        run.window.press(French.no)
        run.window.await_no_alert()
    eventually(lambda: run.window.look().alerts, "the limit")
    assert end_without_connection(rehearsal, run, ENGINE) == "The request timed out (localhost)"
    vendor.release()


@pytest.mark.long
def test_a_trickle_longer_than_30_seconds_that_never_stalls_succeeds(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    engine = rehearsal.sample_engine
    vendor.publish(engine)
    vendor.set_faults({ENGINE_PATH: {"bytesPerSecond": len(engine) // 35}})
    run = rehearsal.start()
    eventually(lambda: not run.is_running(), "the end of the download")
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]


# Hosts.

def test_a_download_host_that_refuses_connections(rehearsal):
    rehearsal.vendor().publish(BODY, origin=NOBODY)
    assert "connect" in end_without_connection(rehearsal, rehearsal.start())


def test_a_vendor_is_reached_over_ipv6(rehearsal):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor("--address", "::1")
    vendor.publish(rehearsal.sample_engine)
    assert vendor.origin.startswith("https://[::1]:")
    assert rehearsal.start().status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE]
