"""Looks into a universal executable: what it runs on, what it asks of the system, and whether its pieces fit."""

import re

from code_signature import covers_code, thin
from layout import ARCHITECTURES, FRAMEWORKS, LIBRARIES, MINIMUM_SYSTEM, STUBS, SYSTEM_LIBRARY, SYSTEM_STUB, llvm

QUOTED = re.compile(r"'([^']+)'")
UNDEFINED = re.compile(r"\(undefined\) (?:weak )?external (\S+) \(from (\w+)\)")
SIGNATURE_COMMAND = re.compile(r"cmd LC_CODE_SIGNATURE\s+cmdsize \d+\s+dataoff (\d+)\s+datasize (\d+)")


def declared_symbols(library):
    """As a link sees them: classes and their kin have names of their own."""
    path = STUBS / f"{library}.framework/{library}.tbd" if library in FRAMEWORKS else STUBS / f"lib{library}.tbd"
    names = set()
    for line in path.read_text().splitlines():
        kind, _, values = line.strip().partition(": ")
        if kind == "symbols":
            names.update(QUOTED.findall(values))
        elif kind == "objc-classes":
            names.update(f"_OBJC_{part}_$_{name}" for name in QUOTED.findall(values)
                         for part in ("CLASS", "METACLASS"))
        elif kind == "objc-eh-types":
            names.update(f"_OBJC_EHTYPE_$_{name}" for name in QUOTED.findall(values))
    return names


def system_symbols():
    words = re.findall(r"[^\s,\[\]']+", SYSTEM_STUB.read_text())
    return set(words) | {"dyld_stub_binder"}


class Executable:
    """`findings` says what is wrong, `undefined` how many symbols of the system each architecture asks for."""

    def __init__(self, path, libraries):
        self.path = path
        self.libraries = {LIBRARIES[library] for library in libraries} | {SYSTEM_LIBRARY}
        self.findings = []
        self.size = path.stat().st_size
        self._declared = {library: declared_symbols(library) for library in libraries}
        self._declared["System"] = system_symbols()
        architectures = set(llvm("llvm-lipo", "-archs", path).split())
        self.expect(architectures == set(ARCHITECTURES), f"the executable holds {sorted(architectures)}")
        self.undefined = {architecture: self._check_slice(architecture) for architecture in ARCHITECTURES}

    def expect(self, holds, what):
        if not holds:
            self.findings.append(what)

    def counts(self):
        return ", ".join(f"{architecture} with {count} symbols of the system"
                         for architecture, count in self.undefined.items())

    def _look(self, tool, architecture, *arguments):
        return llvm(tool, *arguments, f"--arch={architecture}", self.path)

    def _check_slice(self, architecture):
        headers = self._look("llvm-objdump", architecture, "--macho", "--private-headers")
        minimum = re.findall(r"\bminos (\S+)", headers)
        self.expect(minimum == [MINIMUM_SYSTEM], f"{architecture}: runs from {minimum} on")
        self._check_signature(architecture, headers)

        used = self._look("llvm-objdump", architecture, "--macho", "--dylibs-used")
        libraries = set(re.findall(r"^\t(\S+) \(", used, re.MULTILINE))
        self.expect(libraries == self.libraries,
                    f"{architecture}: loads {sorted(libraries ^ self.libraries)} against expectation")

        symbols = self._look("llvm-nm", architecture, "-m", "-u")
        undefined = UNDEFINED.findall(symbols)
        self.expect(len(undefined) == len(symbols.strip().splitlines()),
                    f"{architecture}: symbols without a library")
        for symbol, library in undefined:
            library = library.removeprefix("lib").removesuffix(".A").removesuffix(".B")
            self.expect(symbol in self._declared.get(library, ()),
                        f"{architecture}: {symbol} is not declared by {library}")
        return len(undefined)

    def _check_signature(self, architecture, headers):
        """arm64 code without a signature over all of its pages is not run at all; an Intel machine does without."""
        signature = SIGNATURE_COMMAND.search(headers)
        if signature is None:
            self.expect(architecture != "arm64", "arm64: not signed")
            return
        code = thin(self.path.read_bytes(), architecture)
        self.expect(covers_code(code, int(signature[1])), f"{architecture}: the signature does not match the code")
