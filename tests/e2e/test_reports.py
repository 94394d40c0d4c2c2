"""Crash reports and logs of real runs, and the causes that orvane-reports finds in them."""

import re
import subprocess
from pathlib import Path

import pytest
from harness import processes
from harness.engines import program_of_another_machine, shell_engine, waiting_for_the_owners_end
from harness.rehearsal import BOUND_BY_PERMISSIONS
from harness.reports import with_causes
from harness.servers import NOBODY, Proxy, ScriptedServer
from harness.texts import French
from harness.vendor import DESCRIPTION_PATH, ENGINE_PATH

SUPPORT = (Path(__file__).resolve().parents[2] / "docs/support.md").read_text()
BODY = bytes(range(256)) * 4096  # 1 MiB that is no program
OLDER = shell_engine("echo 14.0", "exit 0")
PROXY_REFUSES = b"HTTP/1.1 407 Proxy Authentication Required\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"


# How each cause comes about: a function that leaves the only report with the first vendor, or the only log.

RUNS = {}


def cause(identifier):
    def keep(function):
        RUNS[identifier] = function
        return function
    return keep


def fatal(rehearsal, text, *options, **how):
    """A run that ends with this alert."""
    reported = how.pop("reported", True)
    run = rehearsal.start(*options, **how)
    rehearsal.acknowledge(run, text, reported=reported)


def description(rehearsal, text=French.no_connection, content=None, fault=None, **changes):
    """A run to which this description, or what comes in its place, was sent."""
    vendor = rehearsal.vendor()
    vendor.publish(BODY, **changes)
    if content is not None:
        vendor.publish_file("downloadinstaller.json", content)
    vendor.set_faults({DESCRIPTION_PATH: fault} if fault else {})
    fatal(rehearsal, text)


def transfer(rehearsal, text=French.no_connection, fault=None, **publication):
    """A run whose engine was published, and transferred, in this way."""
    vendor = rehearsal.vendor()
    vendor.publish(BODY, **publication)
    vendor.set_faults({ENGINE_PATH: fault} if fault else {})
    fatal(rehearsal, text)


def transfer_from(rehearsal, origin):
    transfer(rehearsal, origin=origin)


@cause("name-not-resolved")
def _(rehearsal):
    transfer_from(rehearsal, "https://no-such-host.invalid")


@cause("connection-refused")
def _(rehearsal):
    transfer_from(rehearsal, NOBODY)


@cause("proxy-refused")
def _(rehearsal):
    rehearsal.vendor().publish(BODY, origin="https://downloads.kestrix.invalid")
    with Proxy(refusal=PROXY_REFUSES) as proxy:
        fatal(rehearsal, French.no_connection, variables={"https_proxy": proxy.url, "no_proxy": "localhost"})


@cause("no-answer-in-time")
def _(rehearsal):
    rehearsal.limits = {"fileDescriptionWaitSeconds": 1}
    description(rehearsal, fault={"stallAfterBytes": 0})
    rehearsal.vendors[0].release()


@cause("download-stalled")
def _(rehearsal):
    rehearsal.limits = {"downloadTimeoutSeconds": 1}
    transfer(rehearsal, fault={"stallAfterBytes": 1000})
    rehearsal.vendors[0].release()


@cause("connection-broken")
def _(rehearsal):
    transfer(rehearsal, fault={"dropAfterBytes": 1000})


def api_host_with(rehearsal, *flaw):
    """Its report cannot be delivered either, so that the user's log is all there is."""
    rehearsal.vendor(*flaw).publish(BODY)
    fatal(rehearsal, French.no_connection, reported=False)


@cause("certificate-expired")
def _(rehearsal):
    api_host_with(rehearsal, "--certificate", "expired")


@cause("certificate-of-another-host")
def _(rehearsal):
    api_host_with(rehearsal, "--certificate", "wrong-host")


@cause("certificate-not-trusted")
def _(rehearsal):
    api_host_with(rehearsal, "--certificate", "self-signed")


@cause("secure-connection-failed")
def _(rehearsal):
    api_host_with(rehearsal, "--tls", "1.1")


@cause("not-https")
def _(rehearsal):
    transfer_from(rehearsal, "http://localhost")


@cause("redirect-loop")
def _(rehearsal):
    transfer(rehearsal, fault={"redirect": ENGINE_PATH})


@cause("answer-not-http")
def _(rehearsal):
    vendor = rehearsal.vendor()
    with ScriptedServer(vendor, b"SSH-2.0-Server\r\n") as server:
        vendor.publish(BODY, origin=server.origin)
        fatal(rehearsal, French.no_connection)


@cause("answer-too-large")
def _(rehearsal):
    description(rehearsal, fault={"blanks": 1 << 40, "page": ""})


@cause("page-instead-of-description")
def _(rehearsal):
    description(rehearsal, fault={"page": "<html><title>Log in to this network</title></html>"})


@cause("description-damaged")
def _(rehearsal):
    description(rehearsal, content=b'{"URL": "https://downl')


@cause("description-incomplete")
def _(rehearsal):
    description(rehearsal, Size="large")


@cause("digest-unsupported")
def _(rehearsal):
    transfer(rehearsal, French.download_incorrect, algorithm="sha1")


@cause("digest-in-capitals")
def _(rehearsal):
    vendor = rehearsal.vendor()
    described = vendor.publish(BODY)
    vendor.publish(BODY, Checksum=described["Checksum"].upper())
    fatal(rehearsal, French.download_incorrect)


@cause("digest-missing")
def _(rehearsal):
    rehearsal.install_engine(OLDER)
    transfer(rehearsal, French.download_incorrect, Checksum="")


@cause("download-empty")
def _(rehearsal):
    transfer(rehearsal, French.download_incorrect, served=b"")


@cause("download-differs")
def _(rehearsal):
    transfer(rehearsal, French.download_incorrect, fault={"page": "<html>Blocked</html>"})


@cause("bootstrapper-too-old")
def _(rehearsal):
    description(rehearsal, French.too_old, version="15.0")


@cause("publication-too-old")
def _(rehearsal):
    description(rehearsal, French.too_old, version="13.9")


@cause("cipher-unsupported")
def _(rehearsal):
    description(rehearsal, French.too_old, EncryptionAlgorithm="XOR")


@cause("nothing-to-uninstall")
def _(rehearsal):
    rehearsal.vendor().publish(BODY, version="15.0")
    run = rehearsal.start("--uninstall")
    run.window.await_alert(French.uninstallation_consent)
    run.window.press(French.yes)
    rehearsal.acknowledge(run, French.too_old)


def without_the_rights(rehearsal, text, *, cipher=""):
    rehearsal.vendor().publish(BODY, cipher=cipher)
    fatal(rehearsal, text, through=BOUND_BY_PERMISSIONS)


@cause("folder-not-permitted")
def _(rehearsal):
    folder = rehearsal.engine_path.parent.parent
    folder.mkdir(parents=True)
    folder.chmod(0o500)
    without_the_rights(rehearsal, French.installation_failed)


@cause("folder-blocked")
def _(rehearsal):
    rehearsal.engine_path.parent.parent.mkdir(parents=True)
    rehearsal.engine_path.parent.touch()
    transfer(rehearsal, French.installation_failed)


@cause("download-not-writable")
def _(rehearsal):
    rehearsal.engine_path.with_name("varlen-setup.enc").mkdir(parents=True)
    transfer(rehearsal, French.installation_failed, cipher="xor")


@cause("engine-not-readable")
def _(rehearsal):
    rehearsal.install_engine(OLDER, mode=0)
    without_the_rights(rehearsal, French.installation_failed)


@cause("key-unsuitable")
def _(rehearsal):
    transfer(rehearsal, French.installation_failed, cipher="xor", Checksum="abc")


@cause("package-not-installed")
def _(rehearsal):
    transfer(rehearsal, French.installation_failed, cipher="pkg")


@cause("engine-in-use")
def _(rehearsal):
    rehearsal.scenario(f"mark {rehearsal.mark_of('working')}", "wait-interrupt")
    vendor = rehearsal.vendor_with_engine()
    first = rehearsal.start()
    rehearsal.await_mark("working")
    [engine] = first.engines()
    processes.halt(engine)  # so that it does not notice the end of its owner
    first.kill()
    first.log_file().unlink()
    vendor.publish(rehearsal.sample_engine + b"newer", version="14.3", cipher="xor")
    fatal(rehearsal, French.installation_failed)
    processes.end_all([engine])


@cause("engine-not-replaceable")
def _(rehearsal):
    rehearsal.install_engine(OLDER, mode=0o555)
    without_the_rights(rehearsal, French.installation_failed, cipher="xor")


@cause("engine-not-a-program")
def _(rehearsal):
    plain = program_of_another_machine(rehearsal.sample_engine)
    rehearsal.vendor().publish(plain, cipher="xor")
    fatal(rehearsal, French.installation_failed)


@cause("engine-missing")
def _(rehearsal):
    transfer(rehearsal, French.installation_failed, Checksum="")


@cause("engine-message")
def _(rehearsal):
    rehearsal.scenario("fatal Rien ne va plus")
    rehearsal.vendor_with_engine()
    fatal(rehearsal, "Rien ne va plus")


# Runs that leave a log and no report: the program stops, is ended, or does its part.


def stopped(rehearsal, **how):
    """A run whose program stops without an alert."""
    assert rehearsal.start(**how).status() == -6


@cause("engine-does-not-run")
def _(rehearsal):
    rehearsal.install_engine(b"<html>a page</html>")
    rehearsal.vendor().publish(BODY)
    stopped(rehearsal)


@cause("publication-address")
def _(rehearsal):
    rehearsal.vendor().publish(BODY, URL="https://localhost/a b")
    stopped(rehearsal)


@cause("publication-version")
def _(rehearsal):
    rehearsal.vendor().publish(BODY, version="..")
    stopped(rehearsal)


@cause("publication-key")
def _(rehearsal):
    rehearsal.install_engine(OLDER)
    rehearsal.vendor().publish(BODY, cipher="xor", Checksum="")
    stopped(rehearsal)


@cause("engine-message-invalid")
def _(rehearsal):
    rehearsal.scenario("wait-owner-gone")
    rehearsal.vendor_with_engine()
    run = rehearsal.start()
    run.send(1, b"\xff")
    assert run.status() == -6


@cause("language-setting")
def _(rehearsal):
    rehearsal.vendor().publish(BODY)
    stopped(rehearsal, languages="-")


@cause("engine-is-a-folder")
def _(rehearsal):
    rehearsal.engine_path.mkdir(parents=True)
    rehearsal.vendor().publish(BODY)
    stopped(rehearsal)

@cause("engine-took-over")
def _(rehearsal):
    rehearsal.scenario("end 0")
    rehearsal.vendor_with_engine()
    assert rehearsal.start().status() == 0


@cause("ended-at-start")
def _(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    vendor.set_faults({DESCRIPTION_PATH: {"stallAfterBytes": 0}})
    run = rehearsal.start()
    run.await_log("Orvane path is ")
    run.kill()
    vendor.release()


@cause("ended-asking-version")
def _(rehearsal):
    rehearsal.install_engine(shell_engine(waiting_for_the_owners_end(), "exit 0"))
    rehearsal.vendor().publish(BODY)
    run = rehearsal.start()
    run.await_log("Spawning orvane with args --version")
    run.kill()


@cause("ended-downloading")
def _(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(BODY)
    vendor.set_faults({ENGINE_PATH: {"stallAfterBytes": 1000}})
    run = rehearsal.start()
    run.await_log("Downloading latest orvane")
    run.kill()
    vendor.release()


@cause("uninstallation-declined")
def _(rehearsal):
    run = rehearsal.start("--uninstall")
    run.window.await_alert(French.uninstallation_consent)
    run.window.press(French.no)
    assert run.status() == 2


def signs_of(identifier):
    """What support looks for in the log: the pieces between changing parts of each text that the guide shows."""
    row = next(line for line in SUPPORT.splitlines() if line.endswith(f"| `{identifier}` |"))
    signs = re.findall(r"`([^`]{5,})`", row.split(" | ")[0])
    return [[piece.strip() for piece in sign.split("…")] for sign in signs]


@pytest.mark.parametrize("identifier", RUNS)
def test_the_cause_of_a_run_is_found(rehearsal, identifier):
    RUNS[identifier](rehearsal)
    sent = [vendor.folder / "reports" for vendor in rehearsal.vendors[:1] if vendor.report_bodies()]
    [report] = with_causes(rehearsal.build, sent or [rehearsal.log_root])
    assert report["cause"] == identifier, report
    assert report["source"] == ("report" if sent else "log")
    log = subprocess.run([rehearsal.build / "orvane-reports", "show", report["file"]], capture_output=True, text=True,
                         check=True).stdout.partition("\n\n")[2]
    assert any(all(piece in log for piece in sign) for sign in signs_of(identifier)), "the guide does not show it"


# The page.

HOSTILE = "</pre></main><script>document.title = 'taken'</script><img src=x onerror=\"document.title = 'taken'\">\u202e\x1b[2J"
LIGHT, DARK = "255,255,255", "18,24,29"


@pytest.fixture
def hostile_page(rehearsal):
    """The page of three real runs, one of which was sent a page with scripts in the description's place."""
    for name, run in (("1", RUNS["engine-missing"]), ("2", RUNS["bootstrapper-too-old"])):
        run(rehearsal)
        rehearsal.vendors.pop().stop()
        (rehearsal.folder / "vendor").rename(rehearsal.folder / f"vendor-{name}")
    description(rehearsal, content=HOSTILE.encode())
    page = rehearsal.folder / "page.html"
    subprocess.run([rehearsal.build / "orvane-reports", "--html", page,
                    *rehearsal.folder.glob("vendor*/reports")], check=True, stdout=subprocess.DEVNULL)
    return page


def chromium(folder, page, *options):
    """What headless Chromium prints; it can reach no host."""
    tool = subprocess.run(["chromium", "--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
                           f"--user-data-dir={folder / 'browser'}", "--host-resolver-rules=MAP * ~NOTFOUND",
                           "--window-size=1100,1600", *options, page.as_uri()],
                          capture_output=True, text=True, timeout=120)
    assert tool.returncode == 0, tool.stderr
    return tool.stdout


def colour_at(picture, x, y):
    return subprocess.run(["convert", picture, "-format", f"%[fx:round(255*p{{{x},{y}}}.r)],%[fx:round(255*p{{{x},{y}}}.g)],"
                           f"%[fx:round(255*p{{{x},{y}}}.b)]", "info:"], capture_output=True, text=True, check=True).stdout


@pytest.mark.long  # it needs a browser, which is large
def test_a_browser_shows_the_page_in_light_and_dark_and_runs_nothing_of_a_log(hostile_page, tmp_path, results):
    dom = chromium(tmp_path, hostile_page, "--dump-dom")
    assert "<title>Crash reports</title>" in dom and "<script" not in dom and "<img" not in dom
    assert "&lt;script&gt;document.title = 'taken'&lt;/script&gt;" in dom
    assert "\\u{202e}\\x1b[2J" in dom
    assert dom.count('<section class="cause"') == 3 and dom.count("<rect") == 3
    (results / "pictures").mkdir(parents=True, exist_ok=True)
    for scheme, options, ground in (("light", [], LIGHT), ("dark", ["--blink-settings=preferredColorScheme=0"], DARK)):
        picture = results / "pictures" / f"reports-{scheme}.png"
        chromium(tmp_path, hostile_page, f"--screenshot={picture}", *options)
        assert colour_at(picture, 2, 2) == ground
