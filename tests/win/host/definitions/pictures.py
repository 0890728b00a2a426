#!/usr/bin/env python3
"""The pictures of the picture_*.xml test definitions, made by our own code.

    pictures.py          rewrites picture_png.xml and picture_bmp.xml here

plugin_test.py imports this module for the pixels it expects: each picture
is a gradient with a different colour in every pixel, so any shift, cut or
scaling shows. The PNG one has a last column that is fully transparent (its
colour is red, which must never be seen).
"""
import base64
import os
import struct
import zlib

WIDTH, HEIGHT = 24, 16
TRANSPARENT_RED = (255, 0, 0, 0)


def gradient(blue):
    """Rows of (r, g, b, a), top row first."""
    return [[(10 * x + 5, 14 * y + 5, blue, 255) for x in range(WIDTH)] for y in range(HEIGHT)]


def png_picture():
    rows = gradient(200)
    for row in rows:
        row[-1] = TRANSPARENT_RED
    return rows


def bmp_picture():
    return gradient(90)


def png_bytes(rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    raw = b"".join(b"\0" + bytes(c for pixel in row for c in pixel) for row in rows)
    header = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 6, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw)) +
            chunk(b"IEND", b""))


def bmp_bytes(rows):
    """24 bits, bottom-up."""
    width = len(rows[0])
    pad = (4 - width * 3 % 4) % 4
    pixels = b"".join(bytes(c for r, g, b, _ in row for c in (b, g, r)) + b"\0" * pad for row in reversed(rows))
    info = struct.pack("<IiiHHIIiiII", 40, width, len(rows), 1, 24, 0, len(pixels), 2835, 2835, 0, 0)
    return b"BM" + struct.pack("<IHHI", 14 + len(info) + len(pixels), 0, 0, 14 + len(info)) + info + pixels


DEFINITION = """<?xml version="1.0" encoding="UTF-8"?>
<EXTENSION title="{title}" text="Not the placeholder" usediv="1" minwidth="24" minheight="16" rendermethod="1" >
\t<PROPERTIES>
\t</PROPERTIES>
\t<IMAGE filename="{filename}">{image}</IMAGE>
\t<HTML_BODY>PHA+cGljdHVyZTwvcD4=</HTML_BODY>
</EXTENSION>
"""


def definition(title, filename, picture):
    encoded = base64.encodebytes(picture).decode("ascii").replace("\n", "\r\n").strip()
    return DEFINITION.format(title=title, filename=filename, image=encoded)


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    for name, text in (("picture_png.xml", definition("PNG picture", "picture.png", png_bytes(png_picture()))),
                       ("picture_bmp.xml", definition("BMP picture", "picture.bmp", bmp_bytes(bmp_picture())))):
        with open(os.path.join(here, name), "w", newline="") as f:
            f.write(text)


if __name__ == "__main__":
    main()
