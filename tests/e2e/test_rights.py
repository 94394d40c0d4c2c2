"""Started by somebody who may write neither to /opt nor to /Library."""

import os

import pytest
from harness.product import DOWNLOAD_ORIGIN
from harness.rehearsal import NONE
from harness.texts import French
from harness.vendor import DESCRIPTION, REPORT

LOG_FOLDER = "/Library/Application Support/Kestrix"
ENGINE_FOLDER = "/opt/Varlen/orvane"
SOMEBODY_ELSE = 1
UNWRITABLE_TARGET = "The operation could not be completed. (OrvaneBootstrap.DownloadError error 0.)"

# What makes root another user than any other. It stays the user who owns the desktop, whose bus lets nobody else in.
WITHOUT_RIGHTS = ("setpriv", "--bounding-set=-all", "--inh-caps=-all", "--")


@pytest.fixture
def product(product):
    """/opt and /Library belong to somebody else, as they do to root on a user's machine."""
    give_away(product.namespace.root / "opt")
    give_away(product.namespace.root / "Library")
    return product


def give_away(folder):
    for path in (folder, *folder.rglob("*")):
        os.chown(path, SOMEBODY_ELSE, SOMEBODY_ELSE)


def vendor_with_download(product, **publication):
    vendor = product.vendor()
    vendor.publish(product.sample_engine, cipher="xor", origin=DOWNLOAD_ORIGIN, **publication)
    product.namespace.trust(vendor.folder / "ca.pem")
    return vendor


def keep_logs(product):
    """The folder of logs is there and takes the user's."""
    logs = product.log_root / "Installations"
    logs.mkdir(parents=True)
    return logs


def start_without_rights(product, *options):
    return product.start(*options, languages=NONE, through=WITHOUT_RIGHTS)


def denied(path):
    return f"{path}: Permission denied (EACCES)"


@pytest.mark.parametrize("options, folder, text", [
    ([], "Installations", French.installation_failed),
    (["--uninstall"], "Uninstallations", French.uninstallation_failed)])
def test_the_first_run_fails_and_names_both_folders(product, options, folder, text):
    vendor = vendor_with_download(product)
    run = start_without_rights(product, *options)
    if options:
        run.window.press(French.yes)
    product.acknowledge(run, text, reported=False)
    assert f"Error initializing logger: {denied(f'{LOG_FOLDER}/{folder}')}" in run.output()
    assert run.output()[-1] == f"Unable to create orvane directory: {denied(ENGINE_FOLDER)}"
    assert vendor.requests() == [DESCRIPTION]
    assert not list(product.namespace.root.glob("opt/*")) and not list(product.namespace.root.glob("Library/*"))


def test_the_log_names_the_missing_right_where_it_can_be_kept_and_is_sent(product):
    keep_logs(product)
    vendor = vendor_with_download(product)
    run = start_without_rights(product)
    product.acknowledge(run, French.installation_failed)
    assert run.log()[-1] == f"Unable to create orvane directory: {denied(ENGINE_FOLDER)}"
    assert vendor.requests() == [DESCRIPTION, REPORT]


def test_an_older_engine_cannot_be_replaced_and_stays(product):
    keep_logs(product)
    vendor = vendor_with_download(product, version="14.9")
    older = b"#!/bin/sh\necho 14.0\n"
    product.install_engine(older)
    give_away(product.namespace.root / "opt")
    run = start_without_rights(product)
    product.acknowledge(run, French.installation_failed)
    assert run.log()[-1] == f"Unable to download orvane: {UNWRITABLE_TARGET}"
    assert vendor.requests() == [DESCRIPTION, REPORT]
    assert product.engine_path.read_bytes() == older


def test_an_engine_that_may_not_be_made_runnable_cannot_be_started(product):
    keep_logs(product)
    vendor = vendor_with_download(product)
    product.install_engine(mode=0o644)
    give_away(product.namespace.root / "opt")
    run = start_without_rights(product)
    product.acknowledge(run, French.installation_failed)
    assert run.log()[-1] == f"Cannot spawn orvane: {ENGINE_FOLDER}/varlen-setup: Operation not permitted (EPERM)"
    assert vendor.requests() == [DESCRIPTION, REPORT]


def test_a_current_engine_needs_no_rights_to_be_started_and_the_run_goes_on_without_a_log(product):
    product.scenario(f"record {product.mark_of('engine')}", "end 0")
    vendor = vendor_with_download(product)
    product.install_engine()
    give_away(product.namespace.root / "opt")
    run = start_without_rights(product)
    assert run.status() == 0
    assert product.record("engine")["arguments"][0] == f"{ENGINE_FOLDER}/varlen-setup"
    assert f"Error initializing logger: {denied(f'{LOG_FOLDER}/Installations')}" in run.output()
    assert "Using existing orvane" in run.output()
    assert vendor.requests() == [DESCRIPTION]
