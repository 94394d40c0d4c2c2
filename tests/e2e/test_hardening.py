"""How the product was built: the flags of its sources, and what they left in the program. Linux on x86-64, GCC or Clang."""

import json
import platform
import re
import shlex
import subprocess

import pytest

PRODUCT = "OrvaneBootstrap"

pytestmark = pytest.mark.skipif(platform.machine() != "x86_64", reason="the flags and marks are those of x86-64")

FLAGS = ["-fstack-protector-strong", "-fstack-clash-protection", "-fcf-protection", "-Werror=format-security",
         "-D_FORTIFY_SOURCE=2"]


@pytest.fixture
def build(rehearsal):
    if rehearsal.is_sanitized:
        pytest.skip("a build with sanitizers is not what people run")
    return rehearsal.build


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True, timeout=120).stdout


def test_every_source_of_the_product_is_compiled_with_the_hardening_flags(build):
    commands = json.loads((build / "compile_commands.json").read_text())
    sources = {entry["file"]: shlex.split(entry["command"]) for entry in commands if "/src/" in entry["file"]}
    assert len(sources) > 50
    assert [(file, flag) for file, command in sources.items() for flag in FLAGS if flag not in command] == []
    position_independent = {"-fPIC", "-fPIE"}
    assert [file for file, command in sources.items() if not position_independent & set(command)] == []


def test_the_product_is_position_independent_and_its_relocations_are_read_only(build):
    product = build / PRODUCT
    assert re.search(r"Type:\s+DYN \(Position-Independent Executable", output_of("readelf", "--file-header", product))
    assert "GNU_RELRO" in output_of("readelf", "--program-headers", product)
    dynamic = output_of("readelf", "--dynamic", product)
    assert re.search(r"\(FLAGS\)\s+BIND_NOW", dynamic) and re.search(r"\(FLAGS_1\)\s+Flags: .*\bNOW\b.*\bPIE\b", dynamic)
    assert "TEXTREL" not in dynamic and "RPATH" not in dynamic and "RUNPATH" not in dynamic


def test_no_memory_of_the_product_is_writable_and_executable(build):
    headers = output_of("readelf", "--program-headers", "--wide", build / PRODUCT)
    [stack] = re.findall(r"GNU_STACK(?:\s+0x\w+){5}\s+([RWE ]{3})", headers)
    assert stack == "RW "
    segments = re.findall(r"LOAD(?:\s+0x\w+){5}\s+([RWE ]{3})", headers)
    assert len(segments) >= 3 and "RWE" not in segments


def test_the_product_checks_its_stack(build):
    assert "__stack_chk_fail" in output_of("readelf", "--dyn-syms", "--wide", build / PRODUCT)


def test_indirect_branches_of_the_product_land_on_marks(build):
    # The C runtime's own start-up code brings a handful of them to every program.
    code = output_of("objdump", "--disassemble", "--no-show-raw-insn", build / PRODUCT)
    assert code.count("endbr64") > 500
