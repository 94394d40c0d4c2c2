#!/usr/bin/env python3
"""Makes a text stub of each system library from its declarations, so that nothing links but what is declared."""

import re
import sys

from declarations import declarations_of, headers_of
from layout import ARCHITECTURES, FRAMEWORKS, INTERFACES, LIBRARIES, STUBS

# The compiler leaves names that are reserved for it out of what it extracts.
RESERVED_NAME = re.compile(r"^OBJC_EXTERN [^;(\[]*?\b(_\w+)", re.MULTILINE)
# How Intel code calls what returns a large structure; the runtime's headers declare it unavailable on the architecture that
# they are read for.
INTEL_SYMBOLS = {"objc": {"_objc_msgSend_stret"}}
EXCEPTION_CLASS = re.compile(r"__objc_exception__.*\s@interface (\w+)")


def quoted(names):
    return "[ " + ", ".join(f"'{name}'" for name in sorted(names)) + " ]"


def intel_exports(library):
    if library in INTEL_SYMBOLS:
        yield "  - targets: [ x86_64-macos ]"
        yield f"    symbols: {quoted(INTEL_SYMBOLS[library])}"


def stub(library):
    declarations = declarations_of(library)
    own_text = "".join(header.read_text() for header in headers_of(library) if header.is_relative_to(INTERFACES))
    functions_and_variables = {declaration.name for declaration in declarations if declaration.is_exported}
    exports = {
        "symbols": {f"_{name}" for name in functions_and_variables.union(RESERVED_NAME.findall(own_text))},
        "objc-classes": {declaration.name for declaration in declarations if declaration.kind == "class"},
        "objc-eh-types": set(EXCEPTION_CLASS.findall(own_text)),
    }
    targets = "[ " + ", ".join(f"{architecture}-macos" for architecture in ARCHITECTURES) + " ]"
    return "\n".join([
        "--- !tapi-tbd",
        "tbd-version: 4",
        f"targets: {targets}",
        f"install-name: '{LIBRARIES[library]}'",
        "exports:",
        f"  - targets: {targets}",
        *(f"    {kind}: {quoted(names)}" for kind, names in exports.items() if names),
        *intel_exports(library),
        "...",
        "",
    ])


def main():
    for library in LIBRARIES:
        folder = STUBS / f"{library}.framework" if library in FRAMEWORKS else STUBS
        folder.mkdir(parents=True, exist_ok=True)
        path = folder / (f"{library}.tbd" if library in FRAMEWORKS else f"lib{library}.tbd")
        text = stub(library)
        # An unchanged stub keeps its age, so that nothing is linked again for it.
        if not path.exists() or path.read_text() != text:
            path.write_text(text)


if __name__ == "__main__":
    sys.exit(main())
