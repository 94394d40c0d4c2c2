"""What the documents say of the tests and of the program is true and complete."""

import os
import re
import subprocess
from pathlib import Path

import pytest
from harness import sources
from harness.messages import TYPES

ROOT = Path(__file__).resolve().parents[2]
DOCS = ROOT / "docs"
SUPPORT = DOCS / "support.md"
SUPPORT_TEXT = SUPPORT.read_text()

# A claim without a test is written with a dash in its place, and says why.
DOCUMENTS = {"edge-cases.md": "| case | tests |", "fault-table.md": "| case | outcome | tests |",
             "macos-behaviour.md": "| behaviour | tests |", "threat-model.md": "| claim | tests |"}
WITH_TESTS = sorted(name for name in DOCUMENTS if (DOCS / name).exists())

NAMED = re.compile(r"`(test_\w+|\w+Test\.\w+)`")
UNIT_TEST = re.compile(r"\bTEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\s*\)")
WHOLE_RUN = re.compile(r"^def (test_\w+)\(", re.MULTILINE)
LINK = re.compile(r"\]\(([^)#]+)(?:#[^)]*)?\)")

# What stands in errors for programs, not for people: domains and the like.
DOMAINS = re.compile(r"(OrvaneBootstrap(\.\w+)?|OpenSSL|libcurl|POSIX)")


def existing_tests():
    tests = set()
    for file in (ROOT / "tests").rglob("*.cpp"):
        tests.update(f"{suite}.{name}" for suite, name in UNIT_TEST.findall(file.read_text()))
    for file in (ROOT / "tests").rglob("test_*.py"):
        tests.update(WHOLE_RUN.findall(file.read_text()))
    return tests


def rows_of_cases(document):
    """The rows of the tables that name tests."""
    inside = False
    for line in (DOCS / document).read_text().splitlines():
        if line == DOCUMENTS[document]:
            inside = True
        elif not line.startswith("|"):
            inside = False
        elif inside and not line.startswith("|---"):
            yield line


@pytest.mark.parametrize("document", WITH_TESTS)
def test_every_test_that_a_document_names_exists(document):
    named = set(NAMED.findall((DOCS / document).read_text()))
    assert named and sorted(named - existing_tests()) == []


@pytest.mark.parametrize("document", WITH_TESTS)
def test_every_case_names_a_test(document):
    cells = [row.rstrip("| ").rsplit(" | ", 1)[1] for row in rows_of_cases(document)]
    assert cells and [cell for cell in cells if not NAMED.search(cell) and not cell.startswith("– ")] == []


def test_every_line_that_the_program_may_write_stands_in_the_guide_for_support():
    written = {text for _, text in sources.written_texts() if re.search(r"\w{2}", text) and not DOMAINS.fullmatch(text)}
    assert len(written) > 80
    assert sorted(text for text in written if text not in SUPPORT_TEXT) == []


def test_every_text_that_a_user_may_read_stands_in_the_guide_for_support_in_three_languages():
    # A table's asterisks are written with a backslash.
    shown = SUPPORT_TEXT.replace(r"\*", "*")
    texts = list(sources.localized_texts())
    assert len(texts) == 3 * sources.first_unassigned_text()
    missing = [(identifier, piece) for identifier, pieces in texts for piece in pieces
               if not any(piece in line for line in shown.splitlines()
                          if re.match(rf"\| {identifier} \|", line))]
    assert missing == []


def what_nobody_writes(line, written):
    """The line less the texts that the program puts it together from."""
    for text in sorted(written, key=len, reverse=True):
        line = line.replace(text, "")
    return line.strip(" …()`")


def test_no_log_line_of_the_guide_for_support_is_one_that_the_program_has_forgotten():
    table = SUPPORT_TEXT.partition("## Log lines")[2].partition("\nAfter ")[0]
    lines = [line.removeprefix("| ").split(" | ")[0] for line in table.splitlines() if line.startswith("| `")]
    written = {text for _, text in sources.written_texts() if text}
    assert len(lines) > 30
    assert [line for line in lines if what_nobody_writes(line, written)] == []


@pytest.mark.parametrize("document", sorted([*ROOT.glob("*.md"), *DOCS.glob("*.md")], key=lambda file: file.name),
                         ids=lambda file: file.name)
def test_every_file_that_a_document_leads_to_is_there(document):
    prose = re.sub(r"^    .*", "", document.read_text(), flags=re.MULTILINE)
    targets = [target for target in LINK.findall(prose) if "://" not in target]
    assert [target for target in targets if not (document.parent / target).exists()] == []


def test_every_message_type_stands_in_the_guide_for_engines_and_in_orvane_messages_help(rehearsal):
    assert len(TYPES) >= 7
    guide = (DOCS / "engine-guide.md").read_text()
    rows = re.findall(r"^\| (\d+) (\w+) \| ([^|]+) \|", guide, re.MULTILINE)
    assert [(int(number), name, text.replace("`", "")) for number, name, text in rows] == [
        (number, name, text) for number, (name, text) in enumerate(TYPES)]
    tool = rehearsal.build / "orvane-message"
    help_text = subprocess.run([tool, "--help"], capture_output=True, text=True, check=True).stdout
    assert re.findall(r"^ +(\w+) \((\d+)\): (.+)$", help_text, re.MULTILINE) == [
        (name, str(number), text) for number, (name, text) in enumerate(TYPES)]
    unknown = subprocess.run([tool, "owner", str(len(TYPES))], capture_output=True, text=True)
    assert f"the types 0 to {len(TYPES) - 1}" in unknown.stderr


COMMANDS = {"orvane-publish": [[], ["switch"], ["list"], ["prune"], ["verify"]], "orvane-message": [[]], "orvane-reports": [[], ["show"], ["causes"]]}


@pytest.mark.parametrize("tool", COMMANDS)
def test_a_tools_manual_names_every_option_of_its_help(tool, rehearsal):
    manual = (ROOT / f"packaging/man/{tool}.1").read_text()
    helps = [subprocess.run([rehearsal.build / tool, *command, "--help"], capture_output=True, text=True, check=True).stdout
             for command in COMMANDS[tool]]
    options = {option for text in helps for option in re.findall(r"^  --(\w[\w-]*)", text, re.MULTILINE)} - {"help"}
    assert options and [option for option in options if not re.search(rf"^\.It Fl -{option}\b", manual, re.M)] == []
    statuses = {status for text in helps
                for status in re.findall(r"\b(\d\d?)\s[a-z]", text.partition("Exit status")[2])}
    assert [status for status in statuses if f".It {status}\n" not in manual] == []


def test_the_guide_for_support_has_the_causes_of_orvane_reports(rehearsal):
    tables = subprocess.run([rehearsal.build / "orvane-reports", "causes", "--markdown"], capture_output=True, text=True,
                            check=True).stdout
    shown = SUPPORT_TEXT.partition("<!-- causes -->\n")[2].partition("<!-- end of causes -->")[0]
    assert shown == tables, "put the output of orvane-reports causes --markdown between the marks"


def commands():
    """What is run by hand: the executables without a suffix."""
    found = [path for folder in ("scripts", "scripts/macos", "bench", ".ci") for path in sorted((ROOT / folder).iterdir())]
    return [path for path in found if path.is_file() and not path.suffix and os.access(path, os.X_OK)]


@pytest.mark.parametrize("command", commands(), ids=lambda command: command.name)
def test_a_command_of_the_project_knows_h_and_help_alike(command):
    short, long = (subprocess.run([command, option], capture_output=True, text=True, timeout=60, check=True).stdout
                   for option in ("-h", "--help"))
    assert short == long != ""
