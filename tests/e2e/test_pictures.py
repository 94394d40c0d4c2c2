"""What a run looks like, in both languages and at two scales: every text inside its window, and a picture of each
stage for people to judge, under build/e2e/pictures."""

import pytest
from harness.texts import QUIT_QUESTION, English, French, German
from harness.vendor import DESCRIPTION_PATH, ENGINE_PATH

LANGUAGES = pytest.mark.parametrize("language, texts", [("fr_CH", French), ("de_CH", German)], ids=["fr", "de"])
SCALES = pytest.mark.parametrize("scale", [1, 2])

LONG_STEP = ("Installation des bibliothèques communes, des modèles et des exemples | "
             "Gemeinsame Bibliotheken, Vorlagen und Beispiele werden installiert")
LONG_ERROR = ("/opt/Varlen/modules/Grille/12.4.7/ressources/une-très-longue-désignation-sans-aucun-blanc-qui-ne-"
              "tient-pas-sur-une-ligne.dat existe déjà et a été conservé | "
              "/opt/Varlen/modules/Raster/12.4.7/ressourcen/eine-sehr-lange-bezeichnung-ohne-jeden-zwischenraum-"
              "die-nicht-auf-eine-zeile-passt.dat war schon vorhanden und bleibt erhalten")
RESTART_QUESTIONS = {"fr_CH": "L'installeur doit redémarrer pour continuer. Redémarrer maintenant ?",
                     "de_CH": "Das Installationsprogramm muss neu starten. Jetzt neu starten ?"}


@pytest.fixture
def keep(rehearsal, picture, language, scale):
    """Keeps a picture of a stage at which nothing reaches beyond its window."""
    def keep_stage(run, stage):
        assert run.window.overflowing() == []
        picture(f"{language[:2]}-{scale}x-{stage}")

    return keep_stage


def start(rehearsal, language, scale, *options):
    return rehearsal.start(*options, languages=language, variables={"QT_SCALE_FACTOR": str(scale)})


@LANGUAGES
@SCALES
def test_the_stages_of_an_installation_stay_inside_the_window(rehearsal, desktop, keep, language, texts, scale):
    rehearsal.scenario(f"step {LONG_STEP}", "progress 64", f"error {LONG_ERROR}", "cancel 0",
                       rehearsal.gate("step"), "network 2", "cancel 1", rehearsal.gate("network"), "end 1",
                       rehearsal.gate("ended"),
                       f"restart 07 {' | '.join(RESTART_QUESTIONS.values())}", "wait-interrupt",
                       "[step 7]", "end 0")
    engine = rehearsal.sample_engine
    vendor = rehearsal.vendor()
    vendor.publish(engine)
    vendor.set_faults({DESCRIPTION_PATH: {"stallAfterBytes": 0}})
    run = start(rehearsal, language, scale)
    window = run.window
    window.await_step(texts.preparing_installation)
    window.await_cancel(title=texts.cancel)
    keep(run, "1-start")

    vendor.set_faults({ENGINE_PATH: {"bytesPerSecond": len(engine)}})
    vendor.release()
    window.await_progress_beyond(30)
    keep(run, "2-download")
    window.await_progress(64)
    window.await_cancel(enabled=False)
    keep(run, "3-step")
    rehearsal.open_gate("step")
    window.await_error(texts.metered_network)
    window.await_cancel(enabled=True)
    keep(run, "4-network")
    window.press(texts.cancel)
    window.await_alert(texts.abort_installation)
    keep(run, "5-cancel")
    window.press(texts.no)
    window.await_no_alert()
    desktop.request_close("Varlen")
    window.await_alert(QUIT_QUESTION)
    keep(run, "6-quit")
    window.press("NO")
    window.await_no_alert()
    rehearsal.open_gate("network")
    window.await_error(texts.installation_ended_well)
    keep(run, "7-ended-well")
    rehearsal.open_gate("ended")
    window.await_alert(RESTART_QUESTIONS[language])
    keep(run, "8-restart")
    window.press(texts.yes)
    assert run.status() == 0


@LANGUAGES
@SCALES
def test_the_advice_on_connections_stays_inside_its_alert(rehearsal, keep, language, texts, scale):
    run = start(rehearsal, language, scale)
    run.window.await_alert(texts.no_connection)
    keep(run, "alert-no-connection")
    rehearsal.acknowledge(run, texts.no_connection)


@LANGUAGES
@SCALES
def test_the_advice_on_firewalls_stays_inside_its_alert(rehearsal, keep, language, texts, scale):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, served=b"a page")
    run = start(rehearsal, language, scale)
    run.window.await_alert(texts.download_incorrect)
    keep(run, "alert-download-incorrect")
    rehearsal.acknowledge(run, texts.download_incorrect)


@LANGUAGES
@SCALES
def test_the_link_to_a_newer_installer_stays_inside_its_alert(rehearsal, keep, language, texts, scale):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, version="15.0")
    run = start(rehearsal, language, scale)
    run.window.await_alert(texts.too_old)
    keep(run, "alert-too-old")
    rehearsal.acknowledge(run, texts.too_old)


def block_the_engines_folder(rehearsal):
    """A file stands where the engine's folder has to be made."""
    rehearsal.engine_path.parents[1].parent.mkdir()
    rehearsal.engine_path.parents[1].touch()


@LANGUAGES
@SCALES
def test_an_installation_fails_inside_its_alert(rehearsal, keep, language, texts, scale):
    block_the_engines_folder(rehearsal)
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    run = start(rehearsal, language, scale)
    run.window.await_alert(texts.installation_failed)
    keep(run, "alert-installation-failed")
    rehearsal.acknowledge(run, texts.installation_failed)


@LANGUAGES
@SCALES
def test_an_uninstallation_asks_and_fails_inside_its_alerts(rehearsal, keep, language, texts, scale):
    block_the_engines_folder(rehearsal)
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine)
    vendor.set_faults({DESCRIPTION_PATH: {"stallAfterBytes": 0}})
    run = start(rehearsal, language, scale, "--uninstall")
    run.window.await_alert(texts.uninstallation_consent)
    keep(run, "alert-consent")
    run.window.press(texts.yes)
    run.window.await_step(texts.preparing_uninstallation)
    run.window.press(texts.cancel)
    run.window.await_alert(texts.abort_uninstallation)
    keep(run, "alert-cancel-uninstallation")
    run.window.press(texts.no)
    run.window.await_no_alert()
    vendor.release()
    run.window.await_alert(texts.uninstallation_failed)
    keep(run, "alert-failed")
    rehearsal.acknowledge(run, texts.uninstallation_failed)


ENGLISH_ALERTS = ["abort_installation", "abort_uninstallation", "no_connection", "download_incorrect",
                  "uninstallation_consent", "too_old", "installation_failed", "uninstallation_failed"]
ENGLISH_LINES = ["preparing_installation", "preparing_uninstallation", "installation_ended_well",
                 "uninstallation_ended_well", "metered_network", "no_connection"]


@pytest.mark.long
@pytest.mark.parametrize("language", ["en"])
@SCALES
def test_the_english_texts_would_stay_inside_window_and_alerts(rehearsal, keep, language, scale):
    """No preference leads to them, so it is the engine that says them."""
    rehearsal.scenario("step ...", "wait-interrupt")
    rehearsal.vendor_with_engine()
    run = start(rehearsal, language, scale)
    run.window.await_step("...")
    for name in ENGLISH_LINES:
        text = getattr(English, name)
        run.send(4, text)
        run.send(1, text)
        run.window.await_step(text)
        assert run.window.overflowing() == []
    for name in ENGLISH_ALERTS:
        text = getattr(English, name)
        run.send(5, f"01{text}")
        run.window.await_alert(text)
        keep(run, f"alert-{name}")
        run.window.press(French.yes)
        run.window.await_no_alert()
    run.send(3, "0")
    assert run.status() == 0


@pytest.mark.parametrize("language, scale", [("fr_CH", 1)])
def test_an_engines_longest_message_stays_inside_its_alert(rehearsal, keep, language, scale):
    text = "Le composant n'a pas pu être installé. " * 90 + "x" * 300
    rehearsal.scenario(f"fatal {text}")
    rehearsal.vendor_with_engine()
    run = start(rehearsal, language, scale)
    run.window.await_alert(text)
    width, height = run.window.alert_size()
    assert width < 800 and height < 1000
    rehearsal.acknowledge(run, text)
