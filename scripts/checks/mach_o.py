"""The symbols of a Mach-O object, as far as linking asks for them: 64 bits, little-endian, one architecture."""

import struct

MAGIC = 0xFEEDFACF
HEADER_BYTES = 32
LC_SYMTAB = 2
ENTRY_BYTES = 16
N_STAB, N_TYPE, N_EXT, N_UNDF = 0xE0, 0x0E, 0x01, 0x00


def symbols(content):
    """The names that the object defines for others, and those that it wants from them; without their underscore."""
    defined, undefined = set(), set()
    for name, kind in entries(content):
        if kind & N_STAB or not kind & N_EXT:
            continue
        (undefined if kind & N_TYPE == N_UNDF else defined).add(name.removeprefix("_"))
    return defined, undefined


def entries(content):
    table = symbol_table(content)
    if not table:
        return
    offset, count, strings, _ = table
    for index in range(count):
        name, kind = struct.unpack_from("<IB", content, offset + index * ENTRY_BYTES)
        end = content.index(b"\0", strings + name)
        yield content[strings + name : end].decode(), kind


def symbol_table(content):
    magic, _, _, _, commands = struct.unpack_from("<IIIII", content)
    if magic != MAGIC:
        raise ValueError("no Mach-O object of 64 bits")
    at = HEADER_BYTES
    for _ in range(commands):
        command, size = struct.unpack_from("<II", content, at)
        if command == LC_SYMTAB:
            return struct.unpack_from("<IIII", content, at + 8)
        at += size
    return None
