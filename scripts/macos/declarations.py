"""What the headers under packaging/macos/interfaces declare, as the compiler itself reads them."""

import json
import subprocess
from dataclasses import dataclass
from pathlib import Path

from layout import INTERFACES, LLVM, MINIMUM_SYSTEM, SYSTEM_HEADERS

RUNTIME_HEADERS = [SYSTEM_HEADERS / "objc" / name for name in ("runtime.h", "message.h", "objc.h", "NSObject.h")]


@dataclass(frozen=True)
class Declaration:
    kind: str  # "class", "protocol", "method", "type.method", "property", "func", "var" …
    path: tuple  # the names of what it stands in, then its own
    text: str
    introduced: str  # "10.9"; empty where it says nothing
    header: str
    line: int

    @property
    def name(self):
        return self.path[-1]

    @property
    def is_exported(self):
        """Functions and variables with a body or a value in the header are no symbols of the library."""
        return self.kind in ("func", "var") and self.text.startswith("extern")


def headers_of(library):
    if library == "objc":
        return [*RUNTIME_HEADERS, INTERFACES / "include/objc_runtime_support.h"]
    return sorted((INTERFACES / f"{library}.framework/Headers").glob("*.h"))


def _declaration(symbol):
    introduced = next((entry["introduced"] for entry in symbol.get("availability", [])
                       if entry.get("domain") == "macos" and "introduced" in entry), None)
    return Declaration(
        kind=symbol["kind"]["identifier"].removeprefix("objective-c."),
        path=tuple(symbol["pathComponents"]),
        text="".join(fragment["spelling"] for fragment in symbol["declarationFragments"]),
        introduced=f"{introduced['major']}.{introduced['minor']}" if introduced else "",
        header=Path(symbol["location"]["uri"]).name,
        line=symbol["location"]["position"]["line"] + 1)


def extract(headers, *flags):
    command = [LLVM / "clang", "-extract-api", "--product-name=interfaces", "-x", "objective-c-header", "-o", "-",
               *flags, *headers]
    graph = json.loads(subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout)
    return [_declaration(symbol) for symbol in graph["symbols"]]


def declarations_of(library):
    return extract(headers_of(library), "-target", f"arm64-apple-macos{MINIMUM_SYSTEM}", "-nostdlibinc",
                   f"-isystem{SYSTEM_HEADERS}", f"-F{INTERFACES}", "-fobjc-arc")
