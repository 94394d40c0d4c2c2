"""What the product, which runs as administrator, takes from its surroundings and leaves in them."""

import stat
from calendar import timegm

import pytest
from harness.clock import Clock
from harness.rehearsal import NONE
from harness.vendor import DESCRIPTION, ENGINE

ENCIPHERED = ENGINE + ".enc"


def things_in(folder, *below):
    """The paths of everything below these parts of the folder; links are not followed."""
    return {str(path.relative_to(folder)) for part in below for path in (folder / part).glob("**/*")}


def contents_of(folder):
    return {file.name: file.read_bytes() for file in folder.iterdir()}


# Variables.


def seductive(folder):
    """Variables by which libraries, tools and systems are told of other places, hosts, limits and certificates."""
    home = folder / "home"
    home.mkdir()
    (home / ".curlrc").write_text("insecure\nproxy = https://localhost:1\nmax-time = 0.001\n")
    (home / ".netrc").write_text("default login somebody password secret\n")
    (home / "aliases").write_text("api localhost\ndownloads localhost\n")
    (home / "openssl.cnf").write_text("openssl_conf = all\n[all]\nssl_conf = ssl\n[ssl]\nsystem_default = tls\n"
                                      "[tls]\nMaxProtocol = TLSv1.1\n")
    (home / "rehearsal.json").write_text('{"apiOrigin": "https://localhost:1", "certificateAuthority": "/none"}')
    (home / "keys").touch()
    nowhere, empty = str(home / "nowhere"), "/dev/null"
    return {
        "HOME": str(home), "TMPDIR": nowhere, "PWD": nowhere, "ORVANE_REHEARSAL": str(home), "ORVANE_BUILD": nowhere,
        **{f"XDG_{kind}_HOME": nowhere for kind in ("CONFIG", "DATA", "CACHE", "STATE")},
        "CURL_HOME": str(home), "NETRC": str(home / ".netrc"), "CURL_CA_BUNDLE": empty, "CURL_SSL_BACKEND": "none",
        "SSL_CERT_FILE": empty, "SSL_CERT_DIR": nowhere, "SSLKEYLOGFILE": str(home / "keys"),
        "OPENSSL_CONF": str(home / "openssl.cnf"), "OPENSSL_MODULES": nowhere, "OPENSSL_ENGINES": nowhere,
        "GNUTLS_SYSTEM_PRIORITY_FILE": empty, "http_proxy": "http://localhost:1",
        "HOSTALIASES": str(home / "aliases"), "LOCALDOMAIN": "elsewhere.invalid", "RES_OPTIONS": "ndots:9 timeout:1",
    }


def test_no_variable_moves_what_the_product_writes_or_whom_it_asks(product):
    product.scenario("end 0")
    vendor = product.trusted_vendor(product.sample_engine, cipher="xor")
    variables = seductive(product.folder)
    before = contents_of(product.folder / "home")
    run = product.start(variables=variables)
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION, ENCIPHERED]
    assert "authorization" not in vendor.headers_of(ENCIPHERED)
    assert contents_of(product.folder / "home") == before
    log_folder = "Library/Application Support/Kestrix/Installations"
    assert things_in(product.namespace.root, "opt", "Library") == {
        "opt/Varlen", "opt/Varlen/orvane", "opt/Varlen/orvane/varlen-setup", "opt/Varlen/orvane/varlen-setup.enc",
        "Library/Application Support", "Library/Application Support/Kestrix", log_folder,
        f"{log_folder}/{run.log_file().name}"}


# Permissions.


@pytest.mark.parametrize("umask", [0o000, 0o002, 0o020, 0o022, 0o027, 0o077])
def test_files_and_folders_get_default_permissions_and_nobody_else_may_write_them(product, umask):
    product.scenario("end 0")
    product.trusted_vendor(product.sample_engine, cipher="xor")
    run = product.start(through=("sh", "-c", f'umask {umask:03o} && exec "$0"'))
    assert run.status() == 0
    root = product.namespace.root
    for path in [root / thing for thing in things_in(root, "opt", "Library")]:
        mode = path.stat().st_mode
        if stat.S_ISDIR(mode):
            expected = 0o755 & ~umask
        else:
            expected = 0o744 if path == product.engine_path else 0o644 & ~umask
        assert oct(stat.S_IMODE(mode)) == oct(expected), path
        assert mode & 0o022 == 0, path


# Symbolic links. Whoever may put one where the product writes is an administrator already.


@pytest.mark.parametrize("cipher, link, goal", [
    ("", "opt/Varlen", "elsewhere"),
    ("", "opt/Varlen/orvane", "../elsewhere"),
    ("", "opt/Varlen/orvane/varlen-setup", "../../elsewhere/orvane/varlen-setup"),
    ("xor", "opt/Varlen/orvane/varlen-setup.enc", "../../elsewhere/orvane/varlen-setup.enc"),
])
def test_a_link_in_the_engines_or_the_downloads_path_is_followed(product, cipher, link, goal):
    product.scenario("end 0")
    product.trusted_vendor(product.sample_engine, cipher=cipher)
    place = product.namespace.root / link
    place.parent.mkdir(parents=True, exist_ok=True)
    (product.namespace.root / "opt/elsewhere/orvane").mkdir(parents=True)
    place.symlink_to(goal)
    assert product.start().status() == 0
    assert place.is_symlink()
    assert product.engine_path.read_bytes() == product.sample_engine
    [written] = [path for path in (product.namespace.root / "opt/elsewhere").glob("**/varlen-setup*")]
    assert written.is_file() and not written.is_symlink()


def test_an_enciphered_engine_is_written_through_a_link_to_an_older_one(product):
    product.scenario("end 0")
    product.trusted_vendor(product.sample_engine, cipher="xor")
    product.engine_path.parent.mkdir(parents=True)
    older = product.engine_path.with_name("older")
    older.write_text("#!/bin/sh\necho 14.0\n")
    product.engine_path.symlink_to(older.name)
    assert product.start().status() == 0
    assert product.engine_path.is_symlink() and older.read_bytes() == product.sample_engine
    assert stat.S_IMODE(older.stat().st_mode) == 0o744


def test_no_engine_is_deciphered_to_where_a_dangling_link_leads(product):
    product.trusted_vendor(product.sample_engine, cipher="xor")
    product.engine_path.parent.mkdir(parents=True)
    product.engine_path.symlink_to("nowhere")
    run = product.start()
    assert run.abort_reason().startswith("unexpected error: OrvaneBootstrap/crypto line 181: ")
    assert not product.engine_path.with_name("nowhere").exists()


def test_a_link_in_the_logs_path_is_followed(product):
    product.scenario("end 0")
    product.install_engine()
    elsewhere = product.namespace.root / "Library/elsewhere"
    elsewhere.mkdir()
    (product.log_root / "Installations").parent.mkdir(parents=True)
    (product.log_root / "Installations").symlink_to("../../elsewhere")
    run = product.start()
    assert run.status() == 0
    assert [file.name for file in elsewhere.iterdir()] == [run.log_file().name]


@pytest.fixture
def foreseen_log(product):
    """Where the next run's log will lie, and what starts that run."""
    clock = Clock(product.folder, timegm((2026, 3, 5, 14, 7, 9)))
    file = product.log_root / "Installations/Install 2026-03-05 14-07-09 (bootstrap).log"
    file.parent.mkdir(parents=True)
    return file, lambda: product.start(languages=NONE, variables=clock.variables())


def test_a_link_in_a_logs_place_is_replaced_and_its_goal_left_alone(product, foreseen_log):
    product.scenario("end 0")
    product.install_engine()
    file, start = foreseen_log
    goal = product.log_root / "goal"
    goal.write_text("of somebody else")
    file.symlink_to(f"../{goal.name}")
    run = start()
    assert run.status() == 0
    assert not file.is_symlink() and run.log()[-1].startswith("Spawning orvane")
    assert goal.read_text() == "of somebody else"


def test_a_dangling_link_in_a_logs_place_is_replaced_and_creates_nothing(product, foreseen_log):
    product.scenario("end 0")
    product.install_engine()
    file, start = foreseen_log
    file.symlink_to("../goal")
    run = start()
    assert run.status() == 0
    assert not file.is_symlink() and run.log()[-1].startswith("Spawning orvane")
    assert not (product.log_root / "goal").exists()


def test_a_folder_in_a_logs_place_is_removed_with_its_contents_and_no_link_in_it_followed(product, foreseen_log):
    product.scenario("end 0")
    product.install_engine()
    file, start = foreseen_log
    (file / "deeper").mkdir(parents=True)
    (file / "deeper/file").write_text("old")
    kept = product.namespace.root / "opt/kept"
    kept.mkdir()
    (kept / "file").write_text("of somebody else")
    (file / "deeper/link").symlink_to(kept)
    run = start()
    assert run.status() == 0
    assert file.is_file() and run.log()[-1].startswith("Spawning orvane")
    assert (kept / "file").read_text() == "of somebody else"
