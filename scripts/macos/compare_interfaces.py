#!/usr/bin/env python3
"""Holds every declared method against GNUstep's headers, which were written by other people from the same public
documentation, and the rest against docs/macos-interfaces.md, which names the page that each was read on. With --write,
brings the first table of that document up to date."""

import re
import sys
from collections import defaultdict
from pathlib import Path

from declarations import declarations_of, extract
from layout import INTERFACES, MINIMUM_SYSTEM, ROOT, SYSTEM_HEADERS
from signatures import methods_of

DOCUMENT = ROOT / "docs/macos-interfaces.md"
LIBRARIES = ("Foundation", "AppKit", "QuartzCore")
GNUSTEP = Path("/usr/include/GNUstep")

SUPERCLASS = re.compile(r"@interface \w+ : (\w+)")
CLASS_TABLE = re.compile(r"(?<=<!-- classes -->\n).*?(?=<!-- end of classes -->)", re.DOTALL)
PAGE_ROW = re.compile(r"^\| `([-+]\[\w+ [^`]+\])` \| ([^|]+) \| ([0-9.]+) \|$", re.MULTILINE)

# Names that the newer headers give to plain types.
TYPEDEFS = {"NSErrorDomain": "NSString*", "NSModalResponse": "NSInteger", "NSEventModifierFlags": "NSUInteger",
            "NSWindowStyleMask": "NSUInteger", "GSBlockOperationBlock": "void(^)()",
            "GSDataDeallocatorBlock": "void(^)(void*bytes,NSUIntegerlength)"}


def gnustep_declarations():
    headers = sorted([*(GNUSTEP / "Foundation").glob("*.h"), *(GNUSTEP / "AppKit").glob("*.h")])
    return extract(headers, "-target", f"arm64-apple-macos{MINIMUM_SYSTEM}", "-nostdlibinc",
                   f"-isystem{SYSTEM_HEADERS}", f"-isystem{GNUSTEP}", "-D__GNU_LIBOBJC__=20110608",
                   "-D_OBJC_NSOBJECT_H_", "-fblocks", "-w", "-include", "Foundation/Foundation.h",
                   "-include", "AppKit/AppKit.h")


def is_object(name):
    return name.startswith("id") or re.fullmatch(r"NS\w+\*", name) is not None


def is_same_call(ours, theirs):
    """Whether the types differ by a name or by how closely an object is described; a call is the same either way."""
    return len(ours) == len(theirs) and all(
        TYPEDEFS.get(own, own) == TYPEDEFS.get(other, other) or (is_object(own) and is_object(other))
        for own, other in zip(ours, theirs))


def inherited(methods, superclasses, owner, selector):
    while owner:
        if found := methods.get((owner, selector)):
            return found
        owner = superclasses.get(owner)
    return None


class Comparison:
    def __init__(self):
        self.declarations = [declaration for library in LIBRARIES for declaration in declarations_of(library)]
        self.findings = []
        self.same, self.alike, self.newer = defaultdict(list), defaultdict(list), defaultdict(list)
        self.introduced = {declaration.name: declaration.introduced for declaration in self.declarations
                           if declaration.kind in ("class", "protocol")}
        self._compare()
        self._require_versions()

    def _compare(self):
        theirs = gnustep_declarations()
        their_methods = methods_of(theirs)
        superclasses = {declaration.name: found[1] for declaration in [*self.declarations, *theirs]
                        if declaration.kind == "class" and (found := SUPERCLASS.match(declaration.text))}
        for method in methods_of(self.declarations).values():
            other = inherited(their_methods, superclasses, method.owner, method.selector)
            if other is None:
                self.newer[method.owner].append(method)
            elif method.types == other.types:
                self.same[method.owner].append(method)
            else:
                self.alike[method.owner].append(method)
                if not is_same_call(method.types, other.types):
                    self.findings.append(f"{method} is {method.types} here and {other.types} in GNUstep's headers")

    def _require_versions(self):
        for declaration in self.declarations:
            if (declaration.kind == "class" or declaration.is_exported) and not declaration.introduced:
                place = f"{declaration.header}:{declaration.line}"
                self.findings.append(f"{place}: {declaration.name} says not since when")

    def class_table(self):
        def names(methods):
            return ", ".join(f"`{method.selector}`" for method in methods) or "–"

        owners = sorted({*self.same, *self.alike, *self.newer})
        rows = [f"| {owner} | {len(self.same[owner]) or '–'} | {names(self.alike[owner])} "
                f"| {len(self.newer[owner]) or '–'} |" for owner in owners]
        return "\n".join(["| Class or protocol | Identical | Same call, closer type | By documentation |",
                          "|---|---|---|---|", *rows, ""])

    def check_pages(self, document):
        pages = {member: (page, version) for member, page, version in PAGE_ROW.findall(document)}
        needed = {str(method): method for methods in self.newer.values() for method in methods}
        for member in sorted(needed.keys() - pages.keys()):
            self.findings.append(f"{member} is in no GNUstep header, and {DOCUMENT.name} names no page for it")
        for member in sorted(pages.keys() - needed.keys()):
            self.findings.append(f"{member} stands in {DOCUMENT.name} and needs no page")
        for member in sorted(pages.keys() & needed.keys()):
            declared = needed[member].introduced or self.introduced.get(needed[member].owner, "")
            if pages[member][1] != declared:
                self.findings.append(f"{member} is declared since {declared}, its page says {pages[member][1]}")


def main():
    comparison = Comparison()
    document = DOCUMENT.read_text()
    updated = CLASS_TABLE.sub(lambda _: comparison.class_table(), document)
    if "--write" in sys.argv:
        DOCUMENT.write_text(updated)
    elif updated != document:
        comparison.findings.append(f"{DOCUMENT.name} is out of date; run {Path(__file__).name} --write")
    comparison.check_pages(updated)
    for finding in comparison.findings:
        print(f"interfaces: {finding}")
    if not comparison.findings:
        same, alike, newer = (sum(map(len, group.values()))
                              for group in (comparison.same, comparison.alike, comparison.newer))
        print(f"interfaces: {same} methods as in GNUstep's headers, {alike} but for a closer type, {newer} by "
              f"documentation")
    return 1 if comparison.findings else 0


if __name__ == "__main__":
    sys.exit(main())
