"""What the guides for vendors and engine authors tell to do, done: their very commands, configuration and engines."""

import json
import os
import re
import shlex
import shutil
import subprocess
from pathlib import Path

import pytest

from harness.product import API_HOST, DOWNLOAD_HOST
from harness.reports import log_in
from harness.texts import French
from harness.waiting import eventually

ROOT = Path(__file__).resolve().parents[2]
VENDOR_GUIDE = (ROOT / "docs/vendor-guide.md").read_text()
ENGINE_GUIDE = (ROOT / "docs/engine-guide.md").read_text()
NGINX = shutil.which("nginx", path=f"{os.environ['PATH']}:/usr/sbin")

SHELL_ENGINE = "#!/bin/sh\ncase $1 in --version) echo 14.2.7; exit ;; esac\n"

requires_nginx = pytest.mark.skipif(NGINX is None, reason="needs nginx (Debian's nginx-light)")


def block(document, beginning):
    """The one indented block that begins so, as it would be typed."""
    blocks = re.findall(r"(?:^    .*\n|^\n(?=    ))+", document, re.MULTILINE)
    [found] = [text for text in (re.sub("^    ", "", raw, flags=re.MULTILINE).strip("\n") for raw in blocks)
               if text.startswith(beginning)]
    return found + "\n"


def command(document, beginning, replacements):
    """A command line of a document, with some of its words replaced."""
    words = shlex.split(block(document, beginning).replace("\\\n", " "))
    assert set(replacements) <= set(words)
    return [replacements.get(word, word) for word in words]


class Nginx:
    """Serves the guide's configuration on the stage of the product, from a folder in place of /srv/varlen."""

    def __init__(self, product, certificates):
        self.folder = product.folder / "varlen"
        self.published = self.folder / "published"
        self.reports = self.folder / "reports"
        self.published.mkdir(parents=True)
        self.reports.mkdir()
        sites = block(VENDOR_GUIDE, "server {").replace("/srv/varlen", str(self.folder))
        sites = sites.replace("/etc/ssl/varlen", str(certificates))
        (self.folder / "nginx.conf").write_text(
            "daemon off; user root; pid nginx.pid; events {} http { access_log access.log;\n" + sites + "}\n")
        self._log = open(self.folder / "error.log", "wb")
        command = [NGINX, "-p", self.folder, "-c", "nginx.conf", "-e", "stderr"]
        self._process = subprocess.Popen(product.namespace.command(*command), env=product.variables(),
                                         stdin=subprocess.DEVNULL, stdout=self._log, stderr=self._log)
        product.helpers.append(self._process.pid)
        eventually(lambda: (self.folder / "nginx.pid").exists() or self._process.poll() is not None, "nginx")
        assert self._process.poll() is None, (self.folder / "error.log").read_text()

    def requests(self):
        """"METHOD TARGET STATUS" of each request."""
        return [" ".join(re.search(r'"(\w+ \S+) [^"]*" (\d+)', line).groups())
                for line in (self.folder / "access.log").read_text().splitlines()]

    def stop(self):
        self._process.terminate()
        self._process.wait(timeout=30)
        self._log.close()


@pytest.fixture
def nginx(product):
    """On the vendor's names and port, believed by the product's system."""
    vendor = product.vendor()
    vendor.stop()  # only its certificates are needed
    product.vendors.clear()
    product.namespace.trust(vendor.folder / "ca.pem")
    server = Nginx(product, vendor.folder)
    yield server
    server.stop()


def publish(product, server, **replacements):
    engine = product.folder / "my-engine"
    engine.write_bytes(product.sample_engine)
    words = {"orvane-publish": product.build / "orvane-publish", "my-engine": engine, "published": server.published}
    subprocess.run(command(VENDOR_GUIDE, "orvane-publish my-engine", words | replacements), check=True,
                   stdout=subprocess.DEVNULL)


def verify(product, *options):
    return subprocess.run(product.namespace.command(product.build / "orvane-publish", "verify", *options),
                          env=product.variables(), capture_output=True, text=True)


@requires_nginx
def test_an_engine_published_and_served_as_the_guide_tells_is_installed(product, nginx):
    product.scenario("end 0")
    publish(product, nginx)
    assert product.start("--verbose").status() == 0
    assert product.engine_path.read_bytes() == product.sample_engine
    assert nginx.requests() == ["GET /downloadinstaller?os=darwin&product=varlen 200",
                                "GET /varlen/setup/varlen-setup.enc 200"]


@requires_nginx
def test_verifying_a_publication_says_which_bootstrappers_accept_it(product, nginx):
    publish(product, nginx)
    accepted = verify(product)
    assert (accepted.returncode, accepted.stderr) == (0, "")
    told = block(VENDOR_GUIDE, f"https://{API_HOST}/downloadinstaller").splitlines()
    assert [line for line in told if line != "…" and not line.startswith("ok       description")] == [
        line for line in accepted.stdout.splitlines() if line in told]
    other = verify(product, "--bootstrapper", "13.4", "--json")
    assert other.returncode == 65
    report = json.loads(other.stdout)
    assert report["acceptedMajorVersion"] == "14"
    assert report["bootstrappers"] == [{"version": "13.4", "accepts": False}]
    assert not [finding for finding in report["findings"] if finding["verdict"] != "ok"]


@requires_nginx
def test_verifying_finds_an_engine_that_was_not_uploaded(product, nginx):
    publish(product, nginx)
    (nginx.published / "varlen-setup.enc").unlink()
    refused = verify(product)
    assert refused.returncode == 65
    assert "failed   transferred: the file's digest is " in refused.stdout
    assert "; the file looks like a page\n" in refused.stdout


def test_verifying_believes_the_systems_authorities_unless_told_otherwise(product):
    vendor = product.vendor()
    vendor.publish(product.sample_engine, origin=f"https://{DOWNLOAD_HOST}")
    assert verify(product).returncode == 69
    assert vendor.requests() == []
    assert verify(product, "--authority", str(vendor.folder / "ca.pem")).returncode == 0


@requires_nginx
def test_the_crash_report_lies_in_the_folder_that_the_guide_names(product, nginx):
    publish(product, nginx, **{"14.2.7": "15.0"})
    run = product.start("--verbose")
    run.window.await_alert(French.too_old)
    eventually(lambda: "POST /crashreport 204" in nginx.requests(), "the crash report")
    run.window.press("OK")
    assert run.status() == 1
    [report] = [file for file in nginx.reports.rglob("*") if file.is_file()]
    assert b"bootstrapper major version is 14 and orvane major version is 15" in log_in(report.read_bytes())
    decode = block(VENDOR_GUIDE, "python3 -c").replace("FILE", shlex.quote(str(report)))
    assert subprocess.run(decode, shell=True, capture_output=True, check=True).stdout == log_in(report.read_bytes())


def compiled_engine(folder):
    """The guide's engine, built with the guide's command."""
    source = block(ENGINE_GUIDE, '#include "sender/EngineMessageSender.h"')
    assert len(source.splitlines()) <= 40, "an engine that fits a screen was promised"
    (folder / "MyEngine.cpp").write_text(source)
    (folder / "sender").symlink_to(ROOT / "sender")
    subprocess.run(shlex.split(block(ENGINE_GUIDE, "c++ ")) + ["-Wall", "-Wextra", "-Werror"], cwd=folder, check=True)
    return (folder / "my-engine").read_bytes()


def scripted_engine(_folder):
    return block(ENGINE_GUIDE, SHELL_ENGINE + "while").encode()


@pytest.mark.parametrize("make_engine", [compiled_engine, scripted_engine])
def test_the_engines_in_the_guide_are_rehearsed_as_the_guide_tells(rehearsal, make_engine):
    source = rehearsal.folder / "source"
    source.mkdir()
    engine = make_engine(source)
    (source / "my-engine").write_bytes(engine)
    (source / "my-engine").chmod(0o755)
    script = block(ENGINE_GUIDE, "try=$(mktemp -d)")
    made = rehearsal.folder / "made"
    made.mkdir()
    variables = rehearsal.variables(PATH=f"{rehearsal.build}:{os.environ['PATH']}", TMPDIR=str(made))
    subprocess.run(["sh", "-ec", script.replace("build/release", str(rehearsal.build))], cwd=source, env=variables,
                   stdout=subprocess.DEVNULL, check=True, timeout=60)
    [installed] = made.glob("*/opt/Varlen/orvane/varlen-setup")
    assert installed.read_bytes() == engine
    reported = subprocess.run([installed, "--version"], capture_output=True, text=True, check=True)
    assert reported.stdout == "14.2.7\n"


def test_a_message_sent_by_hand_reaches_the_window(rehearsal):
    """The engine is the guide's one that waits."""
    rehearsal.vendor().publish(block(ENGINE_GUIDE, SHELL_ENGINE + "exec").encode())
    run = rehearsal.start()
    words = {"orvane-message": rehearsal.build / "orvane-message",
             "kestrix.orvane.bootstrap.Ab3dE5gH7j": run.service_name()}
    subprocess.run(command(ENGINE_GUIDE, "orvane-message kestrix", words), check=True)
    run.window.await_step("A text of some length")
    run.window.press(French.cancel)
    run.window.await_alert(French.abort_installation)
    run.window.press(French.yes)
    assert run.status() == 2
