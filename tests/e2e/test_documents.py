"""What the documents say of the tests is true."""

import re
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
EDGE_CASES = ROOT / "docs/edge-cases.md"

NAMED = re.compile(r"`(test_\w+|\w+Test\.\w+)`")
UNIT_TEST = re.compile(r"\bTEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\s*\)")
WHOLE_RUN = re.compile(r"^def (test_\w+)\(", re.MULTILINE)


def existing_tests():
    tests = set()
    for file in (ROOT / "tests").rglob("*.cpp"):
        tests.update(f"{suite}.{name}" for suite, name in UNIT_TEST.findall(file.read_text()))
    for file in (ROOT / "tests/e2e").glob("test_*.py"):
        tests.update(WHOLE_RUN.findall(file.read_text()))
    return tests


def test_every_test_that_the_edge_cases_name_exists():
    named = set(NAMED.findall(EDGE_CASES.read_text()))
    assert named and sorted(named - existing_tests()) == []


def test_every_edge_case_names_a_test():
    rows = [line for line in EDGE_CASES.read_text().splitlines()
            if line.startswith("| ") and line != "| case | tests |"]
    assert rows and [row for row in rows if not NAMED.search(row.rsplit(" | ", 1)[1])] == []
