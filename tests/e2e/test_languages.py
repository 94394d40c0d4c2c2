"""The language of a run, chosen from what its user prefers."""

import pytest
from harness.texts import French, German
from harness.vendor import ENGINE_PATH


def start_with_engine(rehearsal, languages, **variables):
    rehearsal.scenario(f"record {rehearsal.mark_of('engine')}", rehearsal.gate("seen"), "end 0")
    rehearsal.vendor_with_engine()
    return rehearsal.start(languages=languages, variables=variables)


def check(rehearsal, run, texts, locale, found):
    run.window.await_step(texts.preparing_installation)
    run.window.await_cancel(title=texts.cancel)
    rehearsal.open_gate("seen")
    assert run.status() == 0
    arguments = rehearsal.record("engine")["arguments"]
    assert arguments[arguments.index("--locale") + 1] == locale
    assert [line for line in run.log() if line.startswith("Found ")] == [f"Found {tag}" for tag in found]


@pytest.mark.parametrize("languages, texts, locale, found", [
    ("fr_CH", French, "fr-ch", ["fr-CH"]),
    ("FR", French, "fr-ch", ["FR"]),
    ("fre", French, "fr-ch", ["fre"]),
    ("de_CH:fr_CH", German, "de-ch", ["de-CH"]),
    ("ger", German, "de-ch", ["ger"]),
    ("en_US:de_CH", German, "de-ch", ["en-US", "de-CH"]),
    ("en_US:it_IT", French, "fr-CH", ["en-US", "it-IT"]),
    ("frr:den", French, "fr-CH", ["frr", "den"]),
    ("", French, "fr-CH", []),
])
def test_the_first_french_or_german_preference_counts_and_french_without_one(rehearsal, languages, texts, locale,
                                                                             found):
    run = start_with_engine(rehearsal, languages)
    check(rehearsal, run, texts, locale, found)


def test_the_locale_variables_count_where_no_list_is_given(rehearsal):
    run = start_with_engine(rehearsal, "", LC_ALL="", LC_MESSAGES="", LANG="de_CH.UTF-8")
    check(rehearsal, run, German, "de-ch", ["de-CH"])


def test_a_german_installation_speaks_german_throughout(rehearsal):
    rehearsal.scenario("network 1", rehearsal.gate("offline"), "network 2", rehearsal.gate("metered"), "end 1",
                       rehearsal.gate("ended"), "restart 09 Jetzt neu starten ?")
    rehearsal.vendor_with_engine()
    run = rehearsal.start(languages="de_CH")
    window = run.window
    window.await_step(German.preparing_installation)
    window.await_error(German.network_unavailable)
    rehearsal.open_gate("offline")
    window.await_error(German.metered_network)
    rehearsal.open_gate("metered")
    window.await_error(German.installation_ended_well)
    window.press(German.cancel)
    assert window.await_alert(German.abort_installation).buttons == (German.no, German.yes)
    window.press(German.no)
    window.await_no_alert()
    rehearsal.open_gate("ended")
    assert window.await_alert("Jetzt neu starten ?").buttons == (German.yes, German.no)
    window.press(German.no)
    assert run.status() == 2


def test_a_german_uninstallation_speaks_german_throughout(rehearsal):
    rehearsal.scenario("end 1", rehearsal.gate("seen"))
    rehearsal.vendor_with_engine()
    run = rehearsal.start("--uninstall", languages="de_CH")
    assert run.window.await_alert(German.uninstallation_consent).buttons == (German.no, German.yes)
    run.window.press(German.yes)
    run.window.await_step(German.preparing_uninstallation)
    run.window.await_error(German.uninstallation_ended_well)
    run.window.press(German.cancel)
    run.window.await_alert(German.abort_uninstallation)
    run.window.press(German.yes)
    assert run.status() == 2


@pytest.mark.parametrize("publication, fault, text", [
    ({"version": "15.0"}, {}, German.too_old),
    ({}, {"page": "intercepted"}, German.download_incorrect),
    ({}, {"dropAfterBytes": 100}, German.no_connection),
    ({"cipher": "xor", "Checksum": "odd"}, {}, German.installation_failed),
], ids=["too old", "digest", "transfer", "cipher"])
def test_german_fatal_texts(rehearsal, publication, fault, text):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, **publication)
    if fault:
        vendor.set_faults({ENGINE_PATH: fault})
    run = rehearsal.start(languages="de_CH")
    rehearsal.acknowledge(run, text)
