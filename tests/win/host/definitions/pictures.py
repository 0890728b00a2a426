#!/usr/bin/env python3
"""The pictures of the picture_*.xml test definitions, made by our own code.

    pictures.py          rewrites picture_png.xml here

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


def png_bytes(rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    raw = b"".join(b"\0" + bytes(c for pixel in row for c in pixel) for row in rows)
    header = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 6, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw)) +
            chunk(b"IEND", b""))


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
    with open(os.path.join(here, "picture_png.xml"), "w", newline="") as f:
        f.write(definition("PNG picture", "picture.png", png_bytes(png_picture())))


if __name__ == "__main__":
    main()
