"""Where the macOS check keeps its things, and how it calls the two compilers."""

import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
PACKAGING = ROOT / "packaging/macos"
INTERFACES = PACKAGING / "interfaces"

BUILD = ROOT / "build/macos"
TOOLS = BUILD / "tools/node_modules/@zigc"
STUBS = BUILD / "stubs"
GENERATED = BUILD / "generated"
HEADER_ONLY = BUILD / "include"
BUNDLE = BUILD / "OrvaneBootstrap.app"
EXECUTABLE = BUNDLE / "Contents/MacOS/OrvaneBootstrap"
SELF_TEST = BUILD / "OrvaneBootstrapSelfTest"
GOOGLE_TEST = Path("/usr/src/googletest/googletest")

ZIG = TOOLS / "linux-x64/bin/zig"
LIBRARY = TOOLS / "lib"
SYSTEM_HEADERS = LIBRARY / "libc/include/any-darwin-any"
SYSTEM_STUB = LIBRARY / "libc/darwin/libSystem.tbd"
LLVM = Path("/usr/lib/llvm-19/bin")

# What a file is for, as each tool names it.
ARCHITECTURES = {"arm64": "aarch64", "x86_64": "x86_64"}
MINIMUM_SYSTEM = "13.0"

# Each framework the program is linked against, and the library below them, with the name that the loader knows
# it by.
LIBRARIES = {
    "AppKit": "/System/Library/Frameworks/AppKit.framework/Versions/C/AppKit",
    "CoreFoundation": "/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation",
    "Foundation": "/System/Library/Frameworks/Foundation.framework/Versions/C/Foundation",
    "objc": "/usr/lib/libobjc.A.dylib",
}
SYSTEM_LIBRARY = "/usr/lib/libSystem.B.dylib"
FRAMEWORKS = [name for name in LIBRARIES if name != "objc"]
SELF_TEST_LIBRARIES = [name for name in LIBRARIES if name != "AppKit"]  # it has no window

ZIG_ENVIRONMENT = {
    "ZIG_LIB_DIR": str(LIBRARY),
    "ZIG_GLOBAL_CACHE_DIR": str(BUILD / "cache"),
    "ZIG_LOCAL_CACHE_DIR": str(BUILD / "cache"),
}

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wshadow", "-Wold-style-cast", "-Werror"]
# Without what debuggers read, for that names the folder of the build, and the same sources must give the same bytes.
LANGUAGE = ["-std=c++20", "-O2", "-DNDEBUG", "-g0", "-fstack-protector-strong"]
HEADERS = [f"-I{ROOT / 'src'}", f"-I{ROOT}", f"-I{GENERATED}", f"-isystem{HEADER_ONLY}", f"-I{INTERFACES / 'include'}", f"-F{INTERFACES}"]

# What a Mac's own standard library of that age lacks is an error, although this build carries its own.
AVAILABILITY = ["-U_LIBCPP_HAS_VENDOR_AVAILABILITY_ANNOTATIONS", "-D_LIBCPP_HAS_VENDOR_AVAILABILITY_ANNOTATIONS=1"]


def zig(architecture):
    return [str(ZIG), "c++", "-target", f"{ARCHITECTURES[architecture]}-macos.{MINIMUM_SYSTEM}"]


def clang(architecture):
    """The second compiler, on the first one's headers and with its configuration of the standard library."""
    return [
        str(LLVM / "clang++"), "-target", f"{architecture}-apple-macos{MINIMUM_SYSTEM}",
        "-nostdinc++", "-nostdlibinc", "-D_LIBCPP_ABI_VERSION=1", "-D_LIBCPP_ABI_NAMESPACE=__1",
        "-D_LIBCPP_HAS_THREADS=1", "-D_LIBCPP_HAS_MONOTONIC_CLOCK", "-D_LIBCPP_HAS_TERMINAL",
        "-D_LIBCPP_HAS_MUSL_LIBC=0", "-D_LIBCPP_HAS_FILESYSTEM=1", "-D_LIBCPP_HAS_RANDOM_DEVICE",
        "-D_LIBCPP_HAS_LOCALIZATION", "-D_LIBCPP_HAS_UNICODE", "-D_LIBCPP_HAS_WIDE_CHARACTERS",
        "-D_LIBCPP_HAS_NO_STD_MODULES", "-D_LIBCPP_PSTL_BACKEND_SERIAL",
        "-D_LIBCPP_HARDENING_MODE=_LIBCPP_HARDENING_MODE_NONE",
        *AVAILABILITY,
        f"-isystem{LIBRARY / 'libcxx/include'}", f"-isystem{LIBRARY / 'libcxxabi/include'}",
        f"-isystem{LLVM.parent / 'lib/clang/19/include'}",
        f"-isystem{SYSTEM_HEADERS}",
    ]


def language_of(source):
    return ["-fobjc-arc"] if str(source).endswith(".mm") else []


def link_flags(libraries=LIBRARIES):
    names = [flag for name in libraries for flag in (("-framework", name) if name in FRAMEWORKS else (f"-l{name}",))]
    return [f"-F{STUBS}", f"-L{STUBS}", *names]


def llvm(tool, *arguments):
    """What an LLVM tool prints."""
    command = [str(LLVM / tool), *map(str, arguments)]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout
