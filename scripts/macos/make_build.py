#!/usr/bin/env python3
"""Writes the Ninja file that compiles every source for both architectures, by both compilers, and joins what comes
out into the bundle and the self-test. Reads from standard input which program has which source, each a line."""

import shlex
import sys

from layout import (ARCHITECTURES, BUILD, BUNDLE, EXECUTABLE, GENERATED, GOOGLE_TEST, HEADERS, INTERFACES, LANGUAGE,
                    LLVM, PACKAGING, ROOT, SELF_TEST, SELF_TEST_LIBRARIES, STUBS, WARNINGS, ZIG_ENVIRONMENT, clang,
                    language_of, link_flags, zig)

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
        # The linker leaves the names of local things out, for llvm-strip writes addresses of its own memory into an
        # arm64 program, others each time. A failed link can leave an empty file behind.
        yield rule(f"link_{architecture}",
                   f"{zig_command} $in {shlex.join(link_flags())} -Wl,-dead_strip -s -Wl,-x -o $out"
                   " || { rm -f $out; exit 1; }",
                   description=f"{architecture} $out")
        # With the names of its functions, which a report from a Mac may need.
        yield rule(f"link_test_{architecture}",
                   f"{zig_command} $in {shlex.join(link_flags(SELF_TEST_LIBRARIES))} -Wl,-dead_strip -o $out"
                   " || { rm -f $out; exit 1; }",
                   description=f"{architecture} $out")
    # A gate's line goes into a file, so that it can be shown again when there was nothing to do.
    yield rule("gate", f"{sys.executable} $script > $out || {{ cat $out; rm -f $out; exit 1; }}", description="$out")
    yield rule("join", f"{LLVM}/llvm-lipo -create $in -output $out", description="$out")
    yield rule("copy", "cp $in $out", description="$out")
    yield rule("icon", f"{sys.executable} {ROOT}/scripts/macos/make_icon.py $in $out", description="$out")


def object_of(architecture, source):
    return f"{BUILD}/objects/{architecture}/{source}.o"


def edges(programs):
    sources = sorted({source for own in programs.values() for source in own})
    for architecture in ARCHITECTURES:
        library = f"{BUILD}/objects/{architecture}/library"
        yield edge(f"library_{architecture}", library, [ROOT / "scripts/macos/empty.cpp"])
        for source in sources:
            flags = shlex.join(language_of(source))
            yield edge(f"compile_{architecture}", object_of(architecture, source), [ROOT / source], flags=flags)
            yield edge(f"second_{architecture}", f"{BUILD}/objects/{architecture}/{source}.second", [ROOT / source],
                       flags=flags)
        # Others' code, with the warnings that they chose to live with.
        test_framework = object_of(architecture, "gtest-all.cc")
        yield edge(f"compile_{architecture}", test_framework, [GOOGLE_TEST / "src/gtest-all.cc"],
                   flags=f"-w -I{GOOGLE_TEST}")
        further = {EXECUTABLE.name: [], SELF_TEST.name: [test_framework]}
        for rule_name, program in (("link", EXECUTABLE.name), ("link_test", SELF_TEST.name)):
            objects = [object_of(architecture, source) for source in programs[program]]
            yield edge(f"{rule_name}_{architecture}", f"{BUILD}/{architecture}/{program}",
                       [*objects, *further[program]], implicit=[library, *sorted(STUBS.rglob("*.tbd"))])
    for program in (EXECUTABLE, SELF_TEST):
        yield edge("join", program, [f"{BUILD}/{architecture}/{program.name}" for architecture in ARCHITECTURES])
    yield edge("copy", CONTENTS / "Info.plist", [GENERATED / "Info.plist"])
    yield edge("icon", ICON, [PACKAGING / "OrvaneBootstrap.svg"], implicit=[ROOT / "scripts/macos/make_icon.py"])
    seconds = [f"{BUILD}/objects/{architecture}/{source}.second"
               for architecture in ARCHITECTURES for source in sources]
    yield edge("phony", "second", seconds)
    yield from gates()
    yield edge("phony", "bundle", [EXECUTABLE, CONTENTS / "Info.plist", ICON])
    yield edge("phony", "self-test", [SELF_TEST])
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
    programs = {EXECUTABLE.name: [], SELF_TEST.name: []}
    for line in sys.stdin.read().splitlines():
        program, source = line.split()
        programs[program].append(source)
    text = "\n".join(["ninja_required_version = 1.10", f"builddir = {BUILD}", "", *rules(), *edges(programs)])
    output = BUILD / "build.ninja"
    if not output.exists() or output.read_text() != text:
        output.write_text(text)


if __name__ == "__main__":
    sys.exit(main())
