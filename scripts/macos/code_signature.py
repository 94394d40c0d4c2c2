"""The ad-hoc code signature of a Mach-O file: a digest of every page, which the kernel compares before it runs it.

Layout: a big-endian "super blob" of count and (type, offset) pairs, one of which leads to the code directory."""

import hashlib
import struct

CODE_DIRECTORY = 0xFADE0C02
SHA256 = 2


def thin(universal, architecture):
    """The bytes of one architecture inside a universal file, whose header is big-endian."""
    wanted = {"x86_64": 0x01000007, "arm64": 0x0100000C}[architecture]
    for index in range(struct.unpack_from(">I", universal, 4)[0]):
        kind, _, offset, size, _ = struct.unpack_from(">5I", universal, 8 + 20 * index)
        if kind == wanted:
            return universal[offset:offset + size]
    return b""


def covers_code(code, signature):
    """Whether the signature at that offset holds the right digest of every page before it."""
    count = struct.unpack_from(">I", code, signature + 8)[0]
    for index in range(count):
        directory = signature + struct.unpack_from(">I", code, signature + 16 + 8 * index)[0]
        if struct.unpack_from(">I", code, directory)[0] == CODE_DIRECTORY:
            return _pages_match(code, directory, signature)
    return False


def _pages_match(code, directory, end):
    digests, pages, limit, size, kind, page_bits = struct.unpack_from(">16xI8xIIBBxB", code, directory)
    page_size = 1 << page_bits
    if kind != SHA256 or limit != end or pages * page_size < limit:
        return False
    for page in range(pages):
        expected = code[directory + digests + page * size:][:size]
        content = code[page * page_size:min((page + 1) * page_size, limit)]
        if hashlib.sha256(content).digest()[:size] != expected:
            return False
    return True
