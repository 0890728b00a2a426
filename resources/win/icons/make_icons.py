#!/usr/bin/env python3
"""Draws the link pickers' icons (site, page, folder, Internet shortcut) and
writes them as 32-bit .ico files with 16x16 and 32x32 images, next to this
script. Plain Python: shapes are filled with 4x4 supersampling.

    python3 resources/win/icons/make_icons.py
"""
import math
import os
import struct

SAMPLES = 4


def canvas(size):
    return [[(0, 0, 0, 0)] * size for _ in range(size)]


def blend(dst, src, coverage):
    r, g, b, a = src
    a = a * coverage
    dr, dg, db, da = dst
    out_a = a + da * (1 - a)
    if out_a <= 0:
        return (0, 0, 0, 0)
    mix = lambda s, d: (s * a + d * da * (1 - a)) / out_a
    return (mix(r, dr), mix(g, dg), mix(b, db), out_a)


def fill(image, inside, color):
    """Fills the points (in units of the 0..1 square) for which inside(x, y) holds."""
    size = len(image)
    for py in range(size):
        for px in range(size):
            hits = 0
            for sy in range(SAMPLES):
                for sx in range(SAMPLES):
                    x = (px + (sx + 0.5) / SAMPLES) / size
                    y = (py + (sy + 0.5) / SAMPLES) / size
                    if inside(x, y):
                        hits += 1
            if hits:
                image[py][px] = blend(image[py][px], color, hits / SAMPLES ** 2)


def rect(x0, y0, x1, y1):
    return lambda x, y: x0 <= x < x1 and y0 <= y < y1


def circle(cx, cy, r):
    return lambda x, y: (x - cx) ** 2 + (y - cy) ** 2 < r * r


def ring(cx, cy, r, w):
    return lambda x, y: (r - w) ** 2 <= (x - cx) ** 2 + (y - cy) ** 2 < r * r


def polygon(points):
    def inside(x, y):
        hit = False
        n = len(points)
        for i in range(n):
            (ax, ay), (bx, by) = points[i], points[(i + 1) % n]
            if (ay > y) != (by > y) and x < ax + (y - ay) * (bx - ax) / (by - ay):
                hit = not hit
        return hit
    return inside


def rgb(hex_text, alpha=1.0):
    v = int(hex_text, 16)
    return ((v >> 16) / 255, ((v >> 8) & 255) / 255, (v & 255) / 255, alpha)


def draw_globe(image, cx=0.5, cy=0.5, r=0.44):
    fill(image, circle(cx, cy, r), rgb("1f5fa8"))
    fill(image, circle(cx - r * 0.12, cy - r * 0.12, r * 0.86), rgb("3d8fe0"))
    # Continents.
    fill(image, polygon([(cx - r * .7, cy - r * .35), (cx - r * .1, cy - r * .75), (cx + r * .15, cy - r * .4),
                         (cx - r * .15, cy - r * .05), (cx - r * .25, cy + r * .45), (cx - r * .6, cy + r * .1)]),
         rgb("4caf50"))
    fill(image, polygon([(cx + r * .25, cy + r * .05), (cx + r * .75, cy - r * .1), (cx + r * .7, cy + r * .45),
                         (cx + r * .35, cy + r * .7)]), rgb("4caf50"))
    # Meridian and equator lines.
    fill(image, lambda x, y: abs(((x - cx) / (r * 0.45)) ** 2 + ((y - cy) / r) ** 2 - 1) < 0.18
         and circle(cx, cy, r)(x, y), rgb("ffffff", 0.55))
    fill(image, lambda x, y: abs(y - cy) < r * 0.06 and circle(cx, cy, r)(x, y), rgb("ffffff", 0.55))
    fill(image, ring(cx, cy, r, max(0.06, 1.0 / len(image))), rgb("174a85"))


def draw_page(image):
    fold = 0.28
    outline = rgb("5a6572")
    fill(image, polygon([(0.16, 0.03), (0.84 - fold, 0.03), (0.84, 0.03 + fold), (0.84, 0.97), (0.16, 0.97)]), outline)
    px = 1.0 / len(image)
    fill(image, polygon([(0.16 + px, 0.03 + px), (0.84 - fold, 0.03 + px), (0.84 - px, 0.03 + fold),
                         (0.84 - px, 0.97 - px), (0.16 + px, 0.97 - px)]), rgb("ffffff"))
    fill(image, polygon([(0.84 - fold, 0.03), (0.84, 0.03 + fold), (0.84 - fold, 0.03 + fold)]), rgb("c9d3de"))
    for i, y in enumerate((0.42, 0.56, 0.70, 0.84)):
        right = 0.72 if i % 2 == 0 else 0.62
        fill(image, rect(0.28, y, right, y + max(0.06, px)), rgb("3d8fe0"))


def draw_folder(image):
    fill(image, polygon([(0.03, 0.16), (0.38, 0.16), (0.46, 0.26), (0.95, 0.26), (0.95, 0.86), (0.03, 0.86)]),
         rgb("b8860b"))
    fill(image, polygon([(0.06, 0.22), (0.36, 0.22), (0.44, 0.31), (0.92, 0.31), (0.92, 0.82), (0.06, 0.82)]),
         rgb("e8b339"))
    fill(image, polygon([(0.03, 0.40), (0.97, 0.40), (0.92, 0.88), (0.05, 0.88)]), rgb("b8860b"))
    fill(image, polygon([(0.07, 0.44), (0.93, 0.44), (0.89, 0.84), (0.08, 0.84)]), rgb("ffd15c"))


def draw_shortcut(image):
    draw_globe(image, 0.5, 0.46, 0.42)
    # The shortcut arrow in the bottom-left corner.
    fill(image, rect(0.0, 0.52, 0.48, 1.0), rgb("ffffff"))
    fill(image, lambda x, y: rect(0.0, 0.52, 0.48, 1.0)(x, y) and not rect(0.06, 0.58, 0.42, 0.94)(x, y),
         rgb("404040"))
    fill(image, polygon([(0.10, 0.90), (0.10, 0.74), (0.20, 0.66), (0.24, 0.62), (0.19, 0.60), (0.38, 0.60),
                         (0.38, 0.79), (0.33, 0.73), (0.28, 0.78), (0.18, 0.90)]), rgb("1f5fa8"))


def icon_image(size, draw):
    image = canvas(size)
    draw(image)
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    pixels = bytearray()
    for row in reversed(image):
        for r, g, b, a in row:
            to8 = lambda v: max(0, min(255, int(round(v * 255))))
            pixels += bytes((to8(b), to8(g), to8(r), to8(a)))
    mask_stride = ((size + 31) // 32) * 4
    mask = bytearray()
    for row in reversed(image):
        bits = bytearray(mask_stride)
        for x, (_, _, _, a) in enumerate(row):
            if a < 0.5:
                bits[x // 8] |= 0x80 >> (x % 8)
        mask += bits
    return header + pixels + mask


def write_icon(path, draw):
    images = [icon_image(size, draw) for size in (16, 32)]
    out = bytearray(struct.pack("<HHH", 0, 1, len(images)))
    offset = 6 + 16 * len(images)
    for size, data in zip((16, 32), images):
        out += struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    for data in images:
        out += data
    with open(path, "wb") as f:
        f.write(out)


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    for name, draw in (("site", draw_globe), ("page", draw_page), ("folder", draw_folder),
                       ("shortcut", draw_shortcut)):
        write_icon(os.path.join(here, name + ".ico"), draw)


if __name__ == "__main__":
    main()
