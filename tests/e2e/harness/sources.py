"""Texts that the product writes for people, read out of its sources."""

import re
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
_FOLDERS = ("app", "config", "download", "engine", "log", "model", "platform", "verify")
_LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')
_COMMENT = re.compile(r"//.*")
_ESCAPES = {r"\"": '"', r"\n": "\n", r"\\": "\\"}

# What writes a line, or makes the text that ends up in one.
_WRITER = re.compile(r"(?<![\w.])(?:runLogger->)?(?:(?:platform::)?printLine|(?:platform::)?Error|writeProgramLog|WriteProgramLog|"
                     r"programmingError|invalidInput|invalidInputNotLogged|unexpectedError|refuse)\(")


def files(*suffixes):
    """The product's sources for this platform and for both."""
    found = [file for folder in _FOLDERS for file in sorted((ROOT / "src" / folder).iterdir())]
    return [file for file in found if file.suffix in suffixes and not file.stem.endswith("_mac")]


def _without_comments(text):
    """Line comments alone, and none that begins inside a literal."""
    return "\n".join(line if '"' in line.partition("//")[0] else _COMMENT.sub("", line) for line in text.splitlines())


def call_at(text, start):
    """What stands between the parentheses that open just before `start`, literals respected."""
    depth, position = 1, start
    while depth:
        literal = _LITERAL.match(text, position)
        if literal:
            position = literal.end()
            continue
        depth += {"(": 1, ")": -1}.get(text[position], 0)
        position += 1
    return text[start:position - 1]


def literals(code):
    """The texts in a piece of code, neighbours joined as the compiler joins them."""
    texts, end = [], None
    for literal in _LITERAL.finditer(code):
        text = re.sub(r'\\["n\\]', lambda escape: _ESCAPES[escape[0]], literal[1])
        if end is not None and not code[end:literal.start()].strip():
            texts[-1] += text
        else:
            texts.append(text)
        end = literal.end()
    return texts


def first_unassigned_text():
    header = (ROOT / "src/model/TextIdentifiers.h").read_text()
    return int(re.search(r"kFirstUnassigned = (\d+);", header)[1])


def written_texts():
    """(file, text) of each text that the product may write; what changes from run to run is cut out."""
    for file in files(".cpp"):
        text = _without_comments(file.read_text())
        for writer in _WRITER.finditer(text):
            for literal in literals(call_at(text, writer.end())):
                for piece in re.split(r"%[.*\d]*[a-z]|%$|\n", literal):
                    yield file, piece.strip()


def localized_texts():
    """(identifier, pieces) of each text in each language; names that a vendor sets are cut out."""
    text = (ROOT / "src/app/LocalizedTexts.cpp").read_text()
    for entry in re.finditer(r"\badd\((\d+),", text):
        yield int(entry[1]), [piece.strip() for piece in literals(call_at(text, entry.end()))]
