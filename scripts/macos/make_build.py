#!/usr/bin/env python3
"""Writes the Ninja file that compiles every source for both architectures, by both compilers, and joins what comes
out into the bundle. Reads the sources, each a line, from standard input."""

import shlex
import sys

from layout import (ARCHITECTURES, BUILD, BUNDLE, EXECUTABLE, GENERATED, HEADERS, INTERFACES, LANGUAGE, LLVM,
                    PACKAGING, ROOT, STUBS, WARNINGS, ZIG_ENVIRONMENT, clang, language_of, link_flags, zig)

CONTENTS = BUNDLE / "Contents"
ICON = CONTENTS / "Resources/OrvaneBootstrap.icns"


def rule(name, command, **variables):
    lines = [f"rule {name}", f"  command = {command}"]
    return "\n".join(lines + [f"  {key} = {value}" for key, value in variables.items()] + [""])


def edge(rule_name, output, inputs, implicit=(), **variables):
    line = f"build {output}: {rule_name} {' '.join(map(str, inputs))}"
    if implicit:
        line += f" | {' '.join(map(str, implicit))}"
    return "\n".join([line] + [f"  {key} = {value}" for key, value in variables.items()] + [""])


def rules():
    environment = "env " + " ".join(f"{key}={value}" for key, value in ZIG_ENVIRONMENT.items())
    compilation = shlex.join([*LANGUAGE, *WARNINGS, *HEADERS])
    for architecture in ARCHITECTURES:
        zig_command = f"{environment} {shlex.join(zig(architecture))}"
        yield rule(f"compile_{architecture}",
                   f"{zig_command} {compilation} $flags -MD -MF $out.d -c $in -o $out",
                   depfile="$out.d", deps="gcc", description=f"{architecture} $in")
        # The stamp names what was read, since nothing else is left behind.
        yield rule(f"second_{architecture}",
                   f"{shlex.join(clang(architecture))} {compilation} $flags -fsyntax-only -MD -MT $out -MF $out.d $in"
                   " && touch $out",
                   depfile="$out.d", deps="gcc", description=f"{architecture} $in, second compiler")
        # What every program links against is built with the first one; that says much and matters only if it fails.
        yield rule(f"library_{architecture}",
                   f"{zig_command} $in -o $out > $out.log 2>&1 || {{ cat $out.log; exit 1; }}",
                   description=f"{architecture} standard library")
        # A failed link can leave an empty file behind.
        yield rule(f"link_{architecture}",
                   f"{zig_command} $in {shlex.join(link_flags())} -Wl,-dead_strip -o $out"
                   f" && {LLVM}/llvm-strip -x $out || {{ rm -f $out; exit 1; }}",
                   description=f"{architecture} $out")
    # A gate's line goes into a file, so that it can be shown again when there was nothing to do.
    yield rule("gate", f"{sys.executable} $script > $out || {{ cat $out; rm -f $out; exit 1; }}", description="$out")
    yield rule("join", f"{LLVM}/llvm-lipo -create $in -output $out", description="$out")
    yield rule("copy", "cp $in $out", description="$out")
    yield rule("icon", f"{sys.executable} {ROOT}/scripts/macos/make_icon.py $in $out", description="$out")


def edges(sources):
    for architecture in ARCHITECTURES:
        library = f"{BUILD}/objects/{architecture}/library"
        yield edge(f"library_{architecture}", library, [ROOT / "scripts/macos/empty.cpp"])
        objects = []
        for source in sources:
            flags = shlex.join(language_of(source))
            output = f"{BUILD}/objects/{architecture}/{source}"
            objects.append(f"{output}.o")
            yield edge(f"compile_{architecture}", f"{output}.o", [ROOT / source], flags=flags)
            yield edge(f"second_{architecture}", f"{output}.second", [ROOT / source], flags=flags)
        yield edge(f"link_{architecture}", f"{BUILD}/{architecture}/OrvaneBootstrap", objects,
                   implicit=[library, *sorted(STUBS.rglob("*.tbd"))])
    yield edge("join", EXECUTABLE, [f"{BUILD}/{architecture}/OrvaneBootstrap" for architecture in ARCHITECTURES])
    yield edge("copy", CONTENTS / "Info.plist", [GENERATED / "Info.plist"])
    yield edge("icon", ICON, [PACKAGING / "OrvaneBootstrap.svg"], implicit=[ROOT / "scripts/macos/make_icon.py"])
    seconds = [f"{BUILD}/objects/{architecture}/{source}.second"
               for architecture in ARCHITECTURES for source in sources]
    yield edge("phony", "second", seconds)
    yield from gates()
    yield edge("phony", "bundle", [EXECUTABLE, CONTENTS / "Info.plist", ICON])
    yield "default bundle\n"


def gates():
    helpers = ROOT / "scripts/macos"
    headers = sorted(INTERFACES.rglob("*.h"))
    stubs = sorted(STUBS.rglob("*.tbd"))
    shared = sorted(helpers.glob("*.py"))
    yield edge("gate", BUILD / "controls.txt", sorted((helpers / "negative").glob("*.mm")),
               implicit=[*headers, *stubs, *shared], script=helpers / "negative_controls.py")
    yield edge("gate", BUILD / "interfaces.txt", [ROOT / "docs/macos-interfaces.md"],
               implicit=[*headers, *shared], script=helpers / "compare_interfaces.py")
    yield edge("phony", "controls", [BUILD / "controls.txt"])
    yield edge("phony", "interfaces", [BUILD / "interfaces.txt"])


def main():
    sources = sys.stdin.read().split()
    text = "\n".join(["ninja_required_version = 1.10", f"builddir = {BUILD}", "", *rules(), *edges(sources)])
    output = BUILD / "build.ninja"
    if not output.exists() or output.read_text() != text:
        output.write_text(text)


if __name__ == "__main__":
    sys.exit(main())
