"""What a user meets who has nothing but a bare system and the package."""

from harness.texts import French, German
from harness.vendor import DESCRIPTION, ENGINE
from installed_product import TITLE

DENIED = "Permission denied (EACCES)"
GERMAN_USER = {"LANG": "de_CH.UTF-8"}


def test_the_menus_entry_installs_with_administrator_rights_in_the_users_language(product):
    product.system_language("fr_CH.UTF-8")
    product.scenario(f"record {product.mark_of('engine')}", "step Kopieren", "progress 40", product.gate("seen"),
                     "end 0")
    vendor = product.vendor_with_download()
    run = product.pick_from_menu(**GERMAN_USER)
    window = product.watch(run)
    window.await_step("Kopieren")
    window.await_progress(40)
    window.await_cancel(title=German.cancel)
    assert '"OrvaneBootstrap"' in product.desktop.window_property(TITLE, "WM_CLASS")
    product.open_gate("seen")
    assert run.status() == 0

    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc"]
    assert product.engine_path.read_bytes() == product.sample_engine
    assert product.engine_path.stat().st_uid == 0
    assert run.log()[-1].startswith("Spawning orvane with args ")
    arguments = product.record("engine")["arguments"]
    assert arguments[arguments.index("--ownerName") + 1] == "OrvaneBootstrap"
    assert arguments[-1] == "/usr/bin/OrvaneBootstrap"


def test_the_entrys_action_uninstalls(product):
    product.system_language("fr_CH.UTF-8")
    product.scenario(f"record {product.mark_of('engine')}", "end 0")
    product.vendor_with_download()
    product.install_engine()
    run = product.pick_from_menu("Uninstall", **GERMAN_USER)
    window = product.watch(run)
    window.await_alert(German.uninstallation_consent)
    window.press(German.yes)
    assert run.status() == 0
    assert product.record("engine")["arguments"][-1] == "--uninstall"
    assert "Using existing orvane" in run.log("Uninstallations")


def test_without_consent_to_the_rights_nothing_is_started(bare_product):
    bare_product.install()
    run = bare_product.pick_from_menu()
    assert run.status() == 127
    assert "Error creating textual authentication agent" in run.errors()
    assert run.output() == []
    assert not bare_product.engine_path.parents[1].exists() and not bare_product.log_root.exists()


def test_a_proxy_of_the_users_is_dropped(product):
    product.scenario("end 0")
    vendor = product.vendor_with_download()
    run = product.pick_from_menu(https_proxy="http://127.0.0.1:9")
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".enc"]


def test_a_proxy_of_the_administrators_counts(product):
    vendor = product.vendor_with_download()
    product.administer(https_proxy="http://127.0.0.1:9")
    run = product.pick_from_menu()
    window = product.watch(run)
    window.await_alert(French.no_connection)
    window.press("OK")
    assert run.status() == 1
    assert vendor.requests() == []


def test_started_by_hand_without_rights_the_run_fails_and_names_both_folders(product):
    vendor = product.vendor_with_download()
    run = product.run_as_user("/usr/bin/OrvaneBootstrap", LANG="C.UTF-8")
    refused = f"Unable to create orvane directory: /opt/Varlen/orvane: {DENIED}"
    run.await_output(refused)
    product.press_return_in_alert()
    assert run.status() == 1
    assert f"Error initializing logger: /Library/Application Support/Kestrix/Installations: {DENIED}" in run.output()
    assert run.output()[-1] == refused
    assert vendor.requests() == [DESCRIPTION]


def test_removed_the_package_leaves_the_suites_own_files_alone(bare_product):
    product = bare_product
    product.consent()
    product.scenario("end 0")
    product.vendor_with_download()
    before = product.machine.contents()
    product.install()
    run = product.pick_from_menu()
    assert run.status() == 0
    product.purge()
    after = product.machine.contents()
    log = run.log_file().relative_to(product.machine.root)
    assert sorted(after.keys() - before.keys()) == sorted([
        "Library", "Library/Application Support", "Library/Application Support/Kestrix",
        "Library/Application Support/Kestrix/Installations", str(log),
        "opt/Varlen", "opt/Varlen/orvane", "opt/Varlen/orvane/varlen-setup", "opt/Varlen/orvane/varlen-setup.enc"])
    assert {path: after.get(path) for path in before} == before
