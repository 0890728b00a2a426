#!/usr/bin/env python3
"""Converts an uncompressed 24- or 32-bit BMP file into a PNG file.

Usage: bmp_to_png.py IN.bmp OUT.png

Only the standard library (zlib) is used. The PNG is written under a
temporary name and renamed, so a failed run leaves no half-written file.
"""
import os
import struct
import sys
import zlib


def read_bmp(path):
    with open(path, "rb") as f:
        data = f.read()
    if len(data) < 54 or data[:2] != b"BM":
        raise ValueError("not a BMP file")
    offset = struct.unpack_from("<I", data, 10)[0]
    width, height, planes, bits, compression = struct.unpack_from("<iiHHI", data, 18)
    if bits not in (24, 32) or compression not in (0, 3) or width <= 0 or height == 0:
        raise ValueError("unsupported BMP: %d bits, compression %d" % (bits, compression))
    bottom_up = height > 0
    height = abs(height)
    step = bits // 8
    stride = (width * step + 3) & ~3
    if offset + stride * height > len(data):
        raise ValueError("truncated BMP")
    rows = []
    for y in range(height):
        src = y if not bottom_up else height - 1 - y
        start = offset + src * stride
        row = bytearray(width * 3)
        line = data[start:start + width * step]
        row[0::3] = line[2::step]
        row[1::3] = line[1::step]
        row[2::3] = line[0::step]
        rows.append(bytes(row))
    return width, height, rows


def write_png(path, width, height, rows):
    def chunk(kind, body):
        return (struct.pack(">I", len(body)) + kind + body +
                struct.pack(">I", zlib.crc32(kind + body) & 0xFFFFFFFF))

    raw = b"".join(b"\x00" + row for row in rows)
    png = (b"\x89PNG\r\n\x1a\n" +
           chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)) +
           chunk(b"IDAT", zlib.compress(raw, 9)) +
           chunk(b"IEND", b""))
    temp = path + ".part"
    with open(temp, "wb") as f:
        f.write(png)
    os.replace(temp, path)


def main(argv):
    if len(argv) != 3:
        print("usage: bmp_to_png.py IN.bmp OUT.png", file=sys.stderr)
        return 2
    try:
        width, height, rows = read_bmp(argv[1])
        write_png(argv[2], width, height, rows)
    except (OSError, ValueError) as error:
        print("bmp_to_png: %s: %s" % (argv[1], error), file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
