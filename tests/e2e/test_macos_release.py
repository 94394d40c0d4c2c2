"""The release for Mac users, tried here with stand-ins for the Mac's tools: which are called, in which order and with which
arguments, and what the person at the keyboard reads when one of them fails."""

import hashlib
import plistlib
import re
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
RELEASE = ROOT / "scripts/macos/release"
IDENTITY = "Developer ID Application: Kestrix (ABCDE12345)"
PATIENCE_SECONDS = 30

# Each notes its call, and fails where FAIL is a part of the call. What a real tool would leave on the disk, a stand-in
# leaves too.
STAND_IN = r"""#!/bin/bash
tool=$(basename "$0")
call="$tool $*"
echo "$call" >>"$CALLS"
if [[ -n $FAIL && $call == *$FAIL* ]]; then exit 3; fi
case $tool in
    ditto)
        if [[ $1 == -c ]]; then touch "${!#}"; else cp -R "$1" "$2"; fi ;;
    hdiutil) printf image >"${!#}" ;;
    plutil) exec /usr/bin/python3 -c '
import plistlib, sys
print(plistlib.load(open(sys.argv[2], "rb"))[sys.argv[1]])' "$2" "${!#}" ;;
    shasum) shift 2; exec sha256sum "$@" ;;
    xcrun)
        if [[ $1 == notarytool && $2 == submit ]]; then
            printf '<plist><dict><key>id</key><string>42</string><key>status</key><string>%s</string></dict></plist>' \
                "$VERDICT"
        elif [[ $1 == notarytool && $2 == log ]]; then
            echo 'Helpers/OrvaneBootstrap.app: the signature has no time stamp'
        fi ;;
esac
exit 0
"""
TOOLS = ("codesign", "ditto", "hdiutil", "plutil", "shasum", "spctl", "xcrun")


class Mac:
    def __init__(self, folder):
        self.folder = folder
        self.tools = folder / "tools"
        self.calls_file = folder / "calls"
        self.output = folder / "released"
        self.tools.mkdir()
        for tool in TOOLS:
            (self.tools / tool).write_text(STAND_IN)
            (self.tools / tool).chmod(0o755)
        self.application = folder / "Varlen Setup.app"
        for bundle in (self.application, self.application / "Contents/Helpers/OrvaneBootstrap.app"):
            (bundle / "Contents").mkdir(parents=True)
            (bundle / "Contents/Info.plist").write_bytes(plistlib.dumps({"CFBundleShortVersionString": "14.0.0"}))

    def release(self, *arguments, fail="", verdict="Accepted", path=None):
        environment = {"PATH": path or f"{self.tools}:/usr/bin:/bin", "CALLS": str(self.calls_file), "FAIL": fail,
                       "VERDICT": verdict, "TMPDIR": str(self.folder / "work")}
        (self.folder / "work").mkdir(exist_ok=True)
        return subprocess.run([RELEASE, *arguments], env=environment, stdin=subprocess.DEVNULL, capture_output=True,
                              text=True, timeout=PATIENCE_SECONDS, check=False)

    def release_application(self, **how):
        return self.release("--identity", IDENTITY, "--keychain-profile", "kestrix", "--output", str(self.output),
                            str(self.application), **how)

    @property
    def calls(self):
        """Without those that only read a property; W is the folder that the release works in."""
        text = re.sub(rf"{self.folder}/work/[^/]+", "W", self.calls_file.read_text())
        return [call for call in text.replace(str(self.folder), "FOLDER").splitlines() if not call.startswith("plutil")]


@pytest.fixture
def mac(tmp_path):
    return Mac(tmp_path)


def test_a_release_signs_notarises_staples_packs_and_assesses_in_this_order(mac):
    ended = mac.release_application()
    assert ended.returncode == 0, ended.stderr
    sign = f"codesign --force --options runtime --timestamp --sign {IDENTITY}"
    submit = "xcrun notarytool submit {} --keychain-profile kestrix --wait --output-format plist"
    image = "FOLDER/released/Varlen-Setup-14.0.0.dmg"
    assert mac.calls == [
        "ditto FOLDER/Varlen Setup.app W/Varlen Setup.app",
        f"{sign} W/Varlen Setup.app/Contents/Helpers/OrvaneBootstrap.app",
        f"{sign} W/Varlen Setup.app",
        "codesign --verify --deep --strict --verbose=2 W/Varlen Setup.app",
        "ditto -c -k --keepParent W/Varlen Setup.app W/Varlen Setup.zip",
        submit.format("W/Varlen Setup.zip"),
        "xcrun stapler staple W/Varlen Setup.app",
        "ditto W/Varlen Setup.app W/volume/Varlen Setup.app",
        f"hdiutil create -quiet -volname Varlen Setup -srcfolder W/volume -format UDZO {image}",
        f"{sign} {image}",
        submit.format(image),
        f"xcrun stapler staple {image}",
        "codesign --verify --deep --strict W/Varlen Setup.app",
        "spctl --assess --type execute --verbose W/Varlen Setup.app",
        f"xcrun stapler validate {image}",
        f"spctl --assess --type open --context context:primary-signature --verbose {image}",
        "shasum -a 256 Varlen-Setup-14.0.0.dmg",
    ]
    digest = hashlib.sha256((mac.output / "Varlen-Setup-14.0.0.dmg").read_bytes()).hexdigest()
    assert (mac.output / "Varlen-Setup-14.0.0.dmg.sha256").read_text() == f"{digest}  Varlen-Setup-14.0.0.dmg\n"
    assert not list((mac.folder / "work").iterdir())


@pytest.mark.parametrize("fail, says", [
    ("Helpers/OrvaneBootstrap.app", "OrvaneBootstrap.app could not be signed"),
    ("codesign --verify --deep --strict --verbose=2", "the signature of Varlen Setup.app does not verify"),
    ("notarytool submit", "Varlen Setup.zip could not be sent to the notary service"),
    ("stapler staple", "the ticket could not be attached to Varlen Setup.app"),
    ("hdiutil create", "the disk image could not be made"),
    ("spctl --assess --type execute", "Gatekeeper rejects the application"),
    ("stapler validate", "the disk image carries no valid ticket"),
    ("spctl --assess --type open", "Gatekeeper rejects the disk image"),
])
def test_a_step_that_fails_ends_the_release_with_its_name_and_what_to_do(mac, fail, says):
    ended = mac.release_application(fail=fail)
    last = ended.stderr.splitlines()[-2:]
    assert (ended.returncode, last[0]) == (1, f"release: {says}")
    assert last[1].startswith("release: what to do: ")
    assert fail in mac.calls[-1]
    assert not list(mac.output.glob("*.sha256"))


def test_a_rejected_submission_shows_the_notary_services_log(mac):
    ended = mac.release_application(verdict="Invalid")
    assert ended.returncode == 1
    assert mac.calls[-1] == "xcrun notarytool log 42 --keychain-profile kestrix"
    assert "the signature has no time stamp" in ended.stderr
    assert 'release: the notary service answered "Invalid" for Varlen Setup.zip' in ended.stderr


def test_a_released_version_is_not_overwritten(mac):
    mac.output.mkdir()
    (mac.output / "Varlen-Setup-14.0.0.dmg").write_text("released before")
    ended = mac.release_application()
    assert ended.returncode == 1 and "exists already" in ended.stderr
    assert (mac.output / "Varlen-Setup-14.0.0.dmg").read_text() == "released before"


def test_without_a_macs_tools_it_says_what_is_missing(mac):
    ended = mac.release_application(path="/usr/bin:/bin")
    assert ended.returncode == 1
    assert "release: codesign is missing\nrelease: what to do: run this on a Mac" in ended.stderr


@pytest.mark.parametrize("arguments, says", [
    ([], "expected the application to release"),
    (["--identity"], "--identity needs a value"),
    (["--identity", IDENTITY, "--keychain-profile", "kestrix", "/nowhere.app"],
     "/nowhere.app is not an application bundle"),
    (["--verbose"], "unknown option --verbose"),
])
def test_wrong_usage_is_named(mac, arguments, says):
    ended = mac.release(*arguments)
    assert ended.returncode == 64 and ended.stderr.startswith(f"release: {says}\n\nusage: ")


@pytest.mark.parametrize("option", ["-h", "--help"])
def test_it_explains_itself(mac, option):
    ended = mac.release(option)
    assert ended.returncode == 0 and ended.stdout.startswith("usage: scripts/macos/release")
