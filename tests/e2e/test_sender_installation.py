"""What an engine's author installs: the sender's headers, its library and how a compiler finds them."""

import os
import subprocess

import pytest

ENGINE = r"""
#include <sender/orvane_sender.h>
#include <stdio.h>

int main(int count, char** arguments) {
    char error[ORVANE_SENDER_ERROR_SIZE];
    orvane_sender* bootstrapper = orvane_sender_open(arguments[count - 1], error, sizeof error);
    if (bootstrapper == NULL) {
        puts(error);
        return 69;
    }
    orvane_sender_close(bootstrapper);
    return 0;
}
"""
LONGEST_BUILD_SECONDS = 120


def output_of(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=LONGEST_BUILD_SECONDS,
                          **options).stdout


def test_an_engine_in_c_is_built_with_pkg_config_and_needs_the_c_library_alone(rehearsal, tmp_path):
    if rehearsal.is_sanitized:
        pytest.skip("the library of a build with sanitizers needs their libraries")
    prefix = tmp_path / "anywhere"
    output_of("cmake", "--install", rehearsal.build, "--component", "sender", "--prefix", prefix)
    [pkg_config] = prefix.rglob("orvane-sender.pc")
    flags = output_of("pkg-config", "--cflags", "--libs", "orvane-sender",
                      env=os.environ | {"PKG_CONFIG_PATH": str(pkg_config.parent)}).split()
    (tmp_path / "engine.c").write_text(ENGINE)
    output_of("cc", "-std=c99", "-Wall", "-Wextra", "-Werror", tmp_path / "engine.c", "-o", tmp_path / "engine", *flags)
    run = subprocess.run([tmp_path / "engine", "orvane.test.nobody"], capture_output=True, text=True, timeout=30,
                         check=False)
    assert (run.returncode, run.stdout) == (69, "cannot connect to orvane.test.nobody: Connection refused\n")
    libraries = output_of("ldd", tmp_path / "engine")
    assert "libc.so" in libraries and "libstdc++" not in libraries
