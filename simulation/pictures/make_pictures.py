#!/usr/bin/env python3
"""Draws the pictures that the simulated camera shows: a gear train that turns from picture to picture.

Usage: make_pictures.py FOLDER. Needs nothing but Python; the result is the same on every machine.
"""
import math
import struct
import sys
import zlib

WIDTH, HEIGHT, PICTURES = 1280, 1024, 4
CORNER = 144

# centre x, centre y, teeth, direction of turning, gray; the pitch radius is 8 pixels a tooth
GEARS = [
    (470, 560, 36, 1, 205),
    (470 + 416, 560, 16, -1, 160),
    (470 + 416, 560 - 288, 20, 1, 225),
    (470 + 416, 560 + 272, 18, 1, 185),
    (470 - 150, 560 - 360, 12, -1, 140),
]
PITCH = 8.0


def background():
    """A slope of gray from top to bottom under a grid of 64 pixels."""
    lines = []
    for y in range(HEIGHT):
        shade = 34 + 44 * y // HEIGHT
        line = bytearray([shade]) * WIDTH
        for x in range(0, WIDTH, 64):
            line[x] = shade + 14
        lines.append(bytearray(shade + 14 for _ in range(WIDTH)) if y % 64 == 0 else line)
    return lines


def corner_marks(lines):
    """Each corner has a pattern of its own, one step finer than the one before."""
    patterns = [
        (0, 0, lambda x, y: (x // 12 + y // 12) % 2),
        (WIDTH - CORNER, 0, lambda x, y: x // 8 % 2),
        (0, HEIGHT - CORNER, lambda x, y: y // 8 % 2),
        (WIDTH - CORNER, HEIGHT - CORNER, lambda x, y: int(math.hypot(x - CORNER / 2, y - CORNER / 2)) // 9 % 2),
    ]
    for x0, y0, bright in patterns:
        for y in range(CORNER):
            for x in range(CORNER):
                lines[y0 + y][x0 + x] = 240 if bright(x, y) else 16


def ruler(lines):
    """Tick marks every 16 pixels along all four edges."""
    for x in range(CORNER, WIDTH - CORNER, 16):
        length = 20 if x % 160 == 0 else 10
        for y in range(length):
            lines[y][x] = lines[HEIGHT - 1 - y][x] = 200
    for y in range(CORNER, HEIGHT - CORNER, 16):
        length = 20 if y % 160 == 0 else 10
        for x in range(length):
            lines[y][x] = lines[y][WIDTH - 1 - x] = 200


def edge(distance):
    """How much of a pixel is covered, from its distance to an edge; in thirds, so that the files stay small."""
    return round(3 * min(1.0, max(0.0, 0.5 - distance))) / 3


def gear(lines, cx, cy, teeth, angle, gray):
    pitch_radius = PITCH * teeth
    outer, root, hub = pitch_radius + 9, pitch_radius - 11, 22
    spokes, rim = 5 if teeth > 14 else 3, root - 26
    for y in range(int(cy - outer) - 1, int(cy + outer) + 2):
        for x in range(int(cx - outer) - 1, int(cx + outer) + 2):
            dx, dy = x - cx, y - cy
            radius = math.hypot(dx, dy)
            if radius > outer + 1:
                continue
            turned = math.atan2(dy, dx) - angle
            tooth = math.cos(turned * teeth) * 1.7
            profile = root + (outer - root) * min(1.0, max(0.0, 0.5 + tooth))
            cover = edge(radius - profile)
            if cover <= 0:
                continue
            shade = gray
            spoke = abs(math.sin(turned * spokes / 2)) * radius * 2 / spokes
            if hub + 14 < radius < rim and spoke > 15:
                hole = min(edge(hub + 15 - radius), edge(radius - rim + 1), edge(16 - spoke))
                cover *= 1 - hole
            elif abs(radius - (root - 13)) < 1.5 or abs(radius - hub - 8) < 1.5:
                shade = gray - 60
            if radius < hub:
                shade = 60 if radius < hub - 5 else 250
                if radius < 13 and abs(math.sin(turned)) * radius < 3:
                    shade = 230
            old = lines[y][x]
            lines[y][x] = int(old + (shade - old) * cover + 0.5)


def write_png(path, lines):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    raw = b"".join(b"\0" + bytes(line) for line in lines)
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", WIDTH, HEIGHT, 8, 0, 0, 0, 0)))
        file.write(chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def draw(number):
    lines = background()
    ruler(lines)
    step = 2 * math.pi / GEARS[0][2] * 1.35 * number
    for cx, cy, teeth, direction, gray in GEARS:
        gear(lines, cx, cy, teeth, direction * step * GEARS[0][2] / teeth, gray)
    corner_marks(lines)
    for dot in range(number):  # counts the pictures
        for y in range(24):
            for x in range(24):
                if math.hypot(x - 12, y - 12) < 11:
                    lines[40 + y][560 + 36 * dot + x] = 255
    return lines


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    for picture in range(1, PICTURES + 1):
        write_png(f"{sys.argv[1]}/gears_{picture}.png", draw(picture))
