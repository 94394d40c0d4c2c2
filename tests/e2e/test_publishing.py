"""What the guides for vendors and engine authors tell to do, done: their very commands, configuration and engines."""

import json
import os
import re
import shlex
import shutil
import subprocess
import time
from pathlib import Path

import pytest

from harness.display import SEARCH_PATH
from harness.product import API_HOST, DOWNLOAD_HOST
from harness.reports import log_in
from harness.texts import French
from harness.waiting import DEADLINE_SECONDS, eventually

ROOT = Path(__file__).resolve().parents[2]
# As the vendor reads it who built the programs under test.
VENDOR_GUIDE = (ROOT / "docs/vendor-guide.md").read_text().replace(
    "api.kestrix.invalid", API_HOST).replace("downloads.kestrix.invalid", DOWNLOAD_HOST)
ENGINE_GUIDE = (ROOT / "docs/engine-guide.md").read_text()
NGINX = shutil.which("nginx", path=SEARCH_PATH)

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
    """Serves the guide's configuration to the product, from a folder in place of /srv/varlen."""

    def __init__(self, product, certificates):
        self.folder = product.folder / "varlen"
        self.published = self.folder / "published"
        self.reports = self.folder / "reports"
        self.published.mkdir(parents=True)
        self.reports.mkdir()
        self._seen = 0
        self._product = product
        sites = block(VENDOR_GUIDE, "# 10 % of the clients").replace("/srv/varlen", str(self.folder))
        sites = sites.replace("/etc/ssl/varlen", str(certificates)).replace("/var/log/nginx", str(self.folder))
        self._head = ("daemon off; user root; pid nginx.pid; worker_processes 1; events {} http {\n"
                      'log_format sizes \'"$request" $status $request_length $bytes_sent\'; access_log access.log sizes;\n')
        self.sites = sites
        self.start()

    def start(self):
        (self.folder / "nginx.conf").write_text(self._head + self.sites + "}\n")
        self._log = open(self.folder / "error.log", "ab")
        command = [NGINX, "-p", self.folder, "-c", "nginx.conf", "-e", "stderr"]
        self._process = subprocess.Popen(self._product.namespace.command(*command), env=self._product.variables(),
                                         stdin=subprocess.DEVNULL, stdout=self._log, stderr=self._log)
        self._product.helpers.append(self._process.pid)
        eventually(lambda: (self.folder / "nginx.pid").exists() or self._process.poll() is not None, "nginx")
        assert self._process.poll() is None, (self.folder / "error.log").read_text()

    def _logged(self):
        lines = (self.folder / "access.log").read_text().splitlines()
        return [re.search(r'"(\w+ \S+) [^"]*" (\d+) (\d+) (\d+)', line).groups() for line in lines[self._seen:]]

    def requests(self):
        """"METHOD TARGET STATUS" of each request since `forget`."""
        return [f"{target} {status}" for target, status, _, _ in self._logged()]

    def sizes(self):
        """Bytes received and sent for each of them."""
        return [(int(received), int(sent)) for _, _, received, sent in self._logged()]

    def forget(self):
        self._seen += len(self._logged())

    def stored_reports(self):
        return [file for file in self.reports.rglob("*") if file.is_file()]

    def stop(self):
        self._process.terminate()
        self._process.wait(timeout=DEADLINE_SECONDS)
        self._log.close()
        (self.folder / "nginx.pid").unlink(missing_ok=True)


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


def engine_of(version):
    return f"#!/bin/sh\ncase $1 in --version) echo {version}; exit ;; esac\n# an engine long enough\n".encode()


def publish(product, server, engine=None):
    """With the guide's command, in the folder that the server serves."""
    file = product.folder / "my-engine"
    file.write_bytes(engine or product.sample_engine)
    words = {"orvane-publish": product.build / "orvane-publish", "my-engine": file, "published": server.published}
    subprocess.run(command(VENDOR_GUIDE, "orvane-publish my-engine", words), check=True, stdout=subprocess.DEVNULL)


def tool(product, *arguments):
    return subprocess.run(product.namespace.command(product.build / "orvane-publish", *arguments),
                          env=product.variables(), capture_output=True, text=True)


def follow(product, server, beginning, replacements=None):
    """Runs the commands of a block of the guide that begins so."""
    for line in block(VENDOR_GUIDE, beginning).splitlines():
        words = {"published": str(server.published)} | (replacements or {})
        done = tool(product, *[words.get(word, word) for word in shlex.split(line)[1:]])
        assert done.returncode == 0, done.stdout + done.stderr


def switch(product, server, version="14.2.7", *bootstrappers):
    done = tool(product, "switch", version, "--folder", server.published, *bootstrappers)
    assert done.returncode == 0, done.stdout + done.stderr


def verify(product, *options):
    return tool(product, "verify", *options)


CLIENT = """
import http.client, json, socket, ssl, sys
context = ssl.create_default_context(cafile="{authorities}")
host, addresses, method, path, count, size = sys.argv[1:]
statuses, answers = {{}}, []
for address in addresses.split(","):
    connection = None
    for _ in range(int(count)):
        if connection is None:
            connection = http.client.HTTPSConnection(host, context=context, timeout=60)
            connection._create_connection = lambda _, *rest: socket.create_connection((address, 443), *rest)
        connection.request(method, path, body=b"x" * int(size) if method == "POST" else None)
        answer = connection.getresponse()
        body = answer.read()
        statuses[answer.status] = statuses.get(answer.status, 0) + 1
        if answer.will_close:
            connection.close()
            connection = None
    answers.append([body.decode(errors="replace"), dict(answer.getheaders())])
print(json.dumps([statuses, answers]))
"""


def ask_each(product, addresses, host, path, method="GET", count=1, size=0):
    """How often each status came, and the last body and headers from each address. One client, at its own speed."""
    script = CLIENT.format(authorities=product.folder / "authorities.pem")
    done = subprocess.run(product.namespace.command("/usr/bin/python3", "-c", script, host, ",".join(addresses), method,
                                                    path, str(count), str(size)),
                          env=product.variables(), capture_output=True, text=True, timeout=300)
    assert done.returncode == 0, done.stderr
    statuses, answers = json.loads(done.stdout)
    return {int(status): times for status, times in statuses.items()}, answers


def ask(product, host, path, method="GET", count=1, size=0, address="127.0.0.1"):
    statuses, [(body, headers)] = ask_each(product, [address], host, path, method, count, size)
    return statuses, body, headers


@requires_nginx
def test_an_engine_published_and_served_as_the_guide_tells_is_installed(product, nginx):
    product.scenario("end 0")
    publish(product, nginx)
    follow(product, nginx, "orvane-publish switch 14.2.7")
    nginx.forget()
    assert product.start("--verbose").status() == 0
    assert product.engine_path.read_bytes() == product.sample_engine
    assert nginx.requests() == ["GET /downloadinstaller?os=darwin&product=varlen 200",
                                "GET /varlen/setup/14.2.7/varlen-setup.enc 200"]


@requires_nginx
def test_an_installation_loads_the_servers_as_the_guide_says(product, nginx):
    product.scenario("end 0")
    publish(product, nginx)
    switch(product, nginx)
    figures = {name: [int(number) for number in re.findall(r"\d+", row)] for name, row in
               re.findall(r"^\| (installation with [a-z ]+) \| (.*) \|$", VENDOR_GUIDE, re.MULTILINE)}
    for name in ("installation with download", "installation with a current engine"):
        nginx.forget()
        assert product.start("--verbose").status() == 0
        requests, received_limit, sent_limit = figures[name]
        sizes = nginx.sizes()
        assert len(sizes) == requests
        engine = len(product.sample_engine) if requests == 2 else 0
        assert sum(received for received, _ in sizes) < received_limit
        assert sum(sent for _, sent in sizes) - engine < sent_limit


@requires_nginx
def test_verifying_a_publication_says_which_bootstrappers_accept_it(product, nginx):
    publish(product, nginx)
    switch(product, nginx)
    accepted = verify(product)
    assert (accepted.returncode, accepted.stderr) == (0, "")
    told = block(VENDOR_GUIDE, f"https://{API_HOST}/downloadinstaller").splitlines()
    assert [line for line in told if line != "…" and not line.startswith("ok       description:")] == [
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
    switch(product, nginx)
    (nginx.published / "14.2.7/varlen-setup.enc").unlink()
    refused = verify(product)
    assert refused.returncode == 65
    assert "failed   transferred: the file's digest is " in refused.stdout
    assert "; the file looks like a page\n" in refused.stdout
    assert "warning  engine-status: HTTP status 404, first line: <html>\n" in refused.stdout


@requires_nginx
def test_switching_to_what_users_would_not_get_changes_nothing(product, nginx):
    publish(product, nginx, engine_of("14.2.7"))
    switch(product, nginx)
    before = (nginx.published / "downloadinstaller.json").read_bytes()
    publish(product, nginx, engine_of("14.3.1"))
    shutil.move(nginx.published / "14.3.1/varlen-setup.enc", nginx.folder)
    (nginx.published / "14.3.1/varlen-setup.enc").write_text("<html>")
    refused = tool(product, "switch", "14.3.1", "--folder", nginx.published)
    assert refused.returncode == 65
    assert "nothing was switched" in refused.stderr
    assert (nginx.published / "downloadinstaller.json").read_bytes() == before
    publish(product, nginx, engine_of("15.0"))
    assert tool(product, "switch", "15.0", "--folder", nginx.published).returncode == 65
    switch(product, nginx, "15.0", "--bootstrapper", "15.0-15.9")


def versions_described(product, addresses):
    """How many of the clients at these addresses get each version."""
    _, answers = ask_each(product, addresses, API_HOST, "/downloadinstaller?os=darwin&product=varlen")
    count = {}
    for body, headers in answers:
        assert headers["Content-Type"] == "application/json" and headers["Cache-Control"] == "no-store"
        version = json.loads(body)["Version"]
        count[version] = count.get(version, 0) + 1
    return count


@requires_nginx
def test_a_second_version_is_rolled_out_to_a_share_and_rolled_back_as_the_guide_tells(product, nginx):
    # A client on loopback that connects to 127.0.0.N comes from 127.0.0.1; nginx sees the address it is given here.
    nginx.stop()
    nginx.sites = nginx.sites.replace("split_clients $remote_addr", "split_clients $server_addr")
    nginx.start()
    publish(product, nginx, engine_of("14.2.7"))
    switch(product, nginx)
    addresses = [f"127.0.1.{number}" for number in range(1, 41)]
    assert versions_described(product, addresses) == {"14.2.7": 40}
    publish(product, nginx, engine_of("14.3.1"))
    assert versions_described(product, addresses[:3]) == {"14.2.7": 3}
    follow(product, nginx, "orvane-publish switch 14.3.1 --staged")
    share = versions_described(product, addresses)
    assert set(share) == {"14.2.7", "14.3.1"} and share["14.3.1"] < 20
    listed = json.loads(tool(product, "list", "--json", "--folder", nginx.published).stdout)["versions"]
    assert [(entry["version"], entry["current"], entry["staged"]) for entry in listed] == [
        ("14.3.1", False, True), ("14.2.7", True, False)]
    assert tool(product, "switch", "--end-staging", "--folder", nginx.published).returncode == 0
    assert versions_described(product, addresses) == {"14.2.7": 40}
    follow(product, nginx, "orvane-publish switch 14.3.1 --staged")
    follow(product, nginx, "orvane-publish switch 14.3.1 --folder")
    assert versions_described(product, addresses) == {"14.3.1": 40}
    switch(product, nginx, "14.2.7")
    assert versions_described(product, addresses[:3]) == {"14.2.7": 3}


@requires_nginx
def test_both_kinds_of_addresses_are_served_with_headers_for_delivery_networks(product, nginx):
    publish(product, nginx, engine_of("14.2.7"))
    switch(product, nginx)
    for address in ("127.0.0.1", "::1"):
        statuses, _, headers = ask(product, DOWNLOAD_HOST, "/varlen/setup/14.2.7/varlen-setup.enc", address=address)
        assert statuses == {200: 1}
        assert headers["Cache-Control"] == "public, max-age=31536000, immutable"
        assert "Content-Length" in headers and "Content-Encoding" not in headers
        statuses, _, headers = ask(product, API_HOST, "/downloadinstaller?os=darwin&product=varlen", address=address)
        assert statuses == {200: 1} and headers["Cache-Control"] == "no-store"
    for path in ("/varlen/setup/14.9/varlen-setup.enc", "/varlen/setup/downloadinstaller.json",
                 "/varlen/setup/.14.3.partial/varlen-setup.enc", "/varlen/setup/14.2.7/../downloadinstaller.json"):
        statuses, _, headers = ask(product, DOWNLOAD_HOST, path)
        assert statuses == {404: 1} and "Cache-Control" not in headers, path


@requires_nginx
def test_old_versions_are_listed_and_pruned_as_the_guide_tells(product, nginx):
    for version in ("14.2.7", "14.3.1", "14.3.2", "14.3.3", "14.3.4"):
        publish(product, nginx, engine_of(version))
    switch(product, nginx)
    follow(product, nginx, "orvane-publish list")
    assert sorted(folder.name for folder in nginx.published.iterdir() if folder.is_dir()) == [
        "14.2.7", "14.3.2", "14.3.3", "14.3.4"]


def test_a_publication_is_signed_and_checked_as_the_guide_tells(product, tmp_path):
    published = tmp_path / "published"
    file = tmp_path / "my-engine"
    file.write_bytes(engine_of("14.2.7"))
    words = {"orvane-publish": product.build / "orvane-publish", "my-engine": file, "published": published}
    subprocess.run(command(VENDOR_GUIDE, "orvane-publish my-engine", words), check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["openssl", "genrsa", "-out", tmp_path / "ci-key.pem", "2048"], check=True, capture_output=True)
    subprocess.run(["openssl", "rsa", "-in", tmp_path / "ci-key.pem", "-pubout", "-out", tmp_path / "ci-public.pem"],
                   check=True, capture_output=True)
    sign = block(VENDOR_GUIDE, "cd published\nfind")
    check = block(VENDOR_GUIDE, "cd published\nopenssl")
    subprocess.run(["sh", "-ec", sign], cwd=tmp_path, check=True, capture_output=True)
    subprocess.run(["sh", "-ec", check], cwd=tmp_path, check=True, capture_output=True)
    (published / "14.2.7/varlen-setup.enc").write_bytes(b"changed")
    assert subprocess.run(["sh", "-ec", check], cwd=tmp_path, capture_output=True).returncode != 0


def test_verifying_believes_the_systems_authorities_unless_told_otherwise(product):
    vendor = product.vendor()
    vendor.publish(product.sample_engine, origin=f"https://{DOWNLOAD_HOST}")
    assert verify(product).returncode == 69
    assert vendor.requests() == []
    assert verify(product, "--authority", str(vendor.folder / "ca.pem")).returncode == 0


@requires_nginx
def test_the_crash_report_lies_in_the_folder_that_the_guide_names(product, nginx):
    publish(product, nginx, engine_of("15.0"))
    switch(product, nginx, "15.0", "--bootstrapper", "15.0")
    run = product.start("--verbose")
    run.window.await_alert(French.too_old)
    [report] = eventually(nginx.stored_reports, "the crash report")
    eventually(lambda: report.read_bytes().endswith(b"}"), "the whole report")
    run.window.press("OK")
    assert run.status() == 1
    assert b"bootstrapper major version is 14 and orvane major version is 15" in log_in(report.read_bytes())
    decode = block(VENDOR_GUIDE, "python3 -c").replace("FILE", shlex.quote(str(report)))
    assert subprocess.run(decode, shell=True, capture_output=True, check=True).stdout == log_in(report.read_bytes())


@requires_nginx
def test_ten_thousand_reports_of_one_client_fill_neither_disk_nor_log(product, nginx):
    statuses, _, _ = ask(product, API_HOST, "/crashreport", "POST", count=10_000, size=100)
    assert sum(statuses.values()) == 10_000 and set(statuses) == {204, 429}
    # A burst of 5, and 6 a minute for as long as the test takes at the most.
    assert 6 <= statuses[204] <= 40
    assert len(nginx.stored_reports()) == statuses[204]
    written = [file for file in nginx.folder.glob("*.log") if file.stat().st_size]
    assert sum(file.stat().st_size for file in written) < 1000, [file.read_text() for file in written]


@requires_nginx
def test_a_report_larger_than_the_limit_is_dropped_and_not_logged(product, nginx):
    statuses, _, _ = ask(product, API_HOST, "/crashreport", "POST", size=1 << 20)
    assert statuses == {204: 1}
    statuses, _, _ = ask(product, API_HOST, "/crashreport", "POST", size=(1 << 20) + 1)
    assert statuses == {413: 1}
    statuses, _, _ = ask(product, API_HOST, "/crashreport", "GET")
    assert statuses == {403: 1}
    assert len(nginx.stored_reports()) == 1
    assert "too large" not in "".join(file.read_text() for file in nginx.folder.glob("*.log"))


def test_the_quota_of_the_guide_keeps_the_newest_reports(tmp_path):
    reports = tmp_path / "reports"
    for age, name in enumerate(["newest", "second", "third", "oldest"]):
        file = reports / name[0] / name
        file.parent.mkdir(parents=True)
        file.write_bytes(b"x" * 100)
        os.utime(file, (time.time() - 60 * age,) * 2)
    expired = reports / "expired"
    expired.write_bytes(b"x")
    os.utime(expired, (time.time() - 32 * 86400,) * 2)
    script = block(VENDOR_GUIDE, "#!/bin/sh\n# Keeps the newest reports").replace("/srv/varlen", str(tmp_path))
    subprocess.run(["sh", "-c", script, "quota"], check=True)
    assert not expired.exists()
    assert len([file for file in reports.rglob("*") if file.is_file()]) == 4
    subprocess.run(["sh", "-c", script, "quota", "250"], check=True)
    assert sorted(file.name for file in reports.rglob("*") if file.is_file()) == ["newest", "second"]
    assert "* * * * * www-data /usr/local/sbin/varlen-reports-quota" in block(VENDOR_GUIDE, "* * * * *")


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
    variables = rehearsal.variables(PATH=f"{rehearsal.build}:{rehearsal.variables()['PATH']}", TMPDIR=str(made))
    subprocess.run(["sh", "-ec", script.replace("build/release", str(rehearsal.build))], cwd=source, env=variables,
                   stdout=subprocess.DEVNULL, check=True, timeout=DEADLINE_SECONDS)
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
