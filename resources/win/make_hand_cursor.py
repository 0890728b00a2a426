#!/usr/bin/env python3
"""Writes hand_cursor.cur, the pointing hand shown over the Properties
dialog's website link: a 32 by 32 monochrome cursor, hot spot at the tip of
the index finger.

    python3 resources/win/make_hand_cursor.py [OUTPUT]
"""
import os
import struct
import sys

# '#' black, '.' white, ' ' transparent.
HAND = [
    "     ##          ",
    "    #..#         ",
    "    #..#         ",
    "    #..#         ",
    "    #..#         ",
    "    #..###       ",
    "    #..#..###    ",
    "    #..#..#..##  ",
    " ## #..#..#..#.# ",
    "#..##........#..#",
    "#...#...........#",
    " #..............#",
    "  #.............#",
    "  #............# ",
    "   #...........# ",
    "   #..........#  ",
    "    #.........#  ",
    "    #........#   ",
    "     #.......#   ",
    "     #########   ",
]
HOT_SPOT = (5, 0)
SIZE = 32


def mask_rows(pixel_bit):
    """Rows of 4 bytes, bottom row first, one bit per pixel (most significant first)."""
    rows = []
    for y in reversed(range(SIZE)):
        line = HAND[y] if y < len(HAND) else ""
        bits = 0
        for x in range(SIZE):
            ch = line[x] if x < len(line) else " "
            bits = (bits << 1) | pixel_bit(ch)
        rows.append(struct.pack(">I", bits))
    return b"".join(rows)


def cursor_bytes():
    xor = mask_rows(lambda ch: 1 if ch == "." else 0)        # white where the hand is light
    and_ = mask_rows(lambda ch: 1 if ch == " " else 0)       # screen shows through elsewhere
    header = struct.pack("<IiiHHIIiiII", 40, SIZE, 2 * SIZE, 1, 1, 0, len(xor) + len(and_), 0, 0, 2, 0)
    palette = struct.pack("<4B4B", 0, 0, 0, 0, 255, 255, 255, 0)
    image = header + palette + xor + and_
    directory = struct.pack("<HHH", 0, 2, 1)
    entry = struct.pack("<BBBBHHII", SIZE, SIZE, 2, 0, HOT_SPOT[0], HOT_SPOT[1], len(image), 6 + 16)
    return directory + entry + image


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)),
                                                             "hand_cursor.cur")
    with open(out + ".tmp", "wb") as f:
        f.write(cursor_bytes())
    os.replace(out + ".tmp", out)


if __name__ == "__main__":
    main()
