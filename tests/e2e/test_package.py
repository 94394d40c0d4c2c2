"""Engines that come as an installer package. The `installer` of these tests puts the engine into its place."""

import pytest
from harness.texts import French
from harness.vendor import DESCRIPTION, ENGINE, REPORT

INSTALLER = """#!/bin/sh
printf '%s\\n' "$@" >"{record}"
tail -n +2 "$4" >"{engine}"
exit {status}
"""


def provide_installer(rehearsal, status=0):
    """An `installer` on the search path of the program."""
    programs = rehearsal.folder / "bin"
    programs.mkdir()
    installer = programs / "installer"
    installer.write_text(INSTALLER.format(record=rehearsal.mark_of("installer"), engine=rehearsal.engine_path,
                                          status=status))
    installer.chmod(0o755)
    return {"PATH": f"{programs}:{rehearsal.variables()['PATH']}"}


@pytest.mark.parametrize("options", [[], ["--uninstall"]])
def test_a_package_is_handed_to_the_systems_installer_for_the_whole_machine(rehearsal, options):
    rehearsal.scenario("end 0")
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, cipher="pkg")
    run = rehearsal.start(*options, variables=provide_installer(rehearsal))
    if options:
        run.window.press(French.yes)
    assert run.status() == 0
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".pkg"]
    assert rehearsal.mark_of("installer").read_text().splitlines() == [
        "-allowUntrusted", "-verboseR", "-pkg", f"{rehearsal.engine_path}.pkg", "-target", "/"]


def test_the_installers_failure_is_fatal_and_its_status_logged(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, cipher="pkg")
    run = rehearsal.start(variables=provide_installer(rehearsal, status=7))
    rehearsal.acknowledge(run, French.installation_failed)
    assert run.log()[-1] == "Unable to decrypt orvane: code 7"
    assert vendor.requests() == [DESCRIPTION, ENGINE + ".pkg", REPORT]


def test_without_an_installer_the_failure_is_the_one_env_reports(rehearsal):
    vendor = rehearsal.vendor()
    vendor.publish(rehearsal.sample_engine, cipher="pkg")
    run = rehearsal.start()
    rehearsal.acknowledge(run, French.installation_failed)
    assert run.log()[-1] == "Unable to decrypt orvane: code 127"
