#!/usr/bin/env python3
"""Draws src/app/kTools.ico: three server plates with their lamps and a K in front of them."""
import sys

from PIL import Image, ImageDraw

SIZES = [16, 20, 24, 32, 48, 64, 128, 256]
SCALE = 4  # drawn larger and scaled down, for smooth edges


def draw(size):
    s = size * SCALE
    image = Image.new("RGBA", (s, s), (0, 0, 0, 0))
    pen = ImageDraw.Draw(image)
    u = s / 32
    pen.rounded_rectangle((u, u, s - u, s - u), 6 * u, fill=(24, 52, 92, 255))
    for row, lamp in enumerate([(96, 214, 110), (96, 214, 110), (250, 186, 58)]):
        top = (5 + 8 * row) * u
        pen.rounded_rectangle((4 * u, top, 28 * u, top + 6 * u), 1.5 * u, fill=(52, 92, 148, 255))
        pen.ellipse((23 * u, top + 1.8 * u, 25.6 * u, top + 4.4 * u), fill=lamp + (255,))
    width = int(4.2 * u)
    white = (255, 255, 255, 255)
    pen.line((9.5 * u, 6 * u, 9.5 * u, 26 * u), fill=white, width=width)
    pen.line((20.5 * u, 6 * u, 10.5 * u, 16 * u), fill=white, width=width)
    pen.line((12.5 * u, 14.5 * u, 21 * u, 26 * u), fill=white, width=width)
    return image.resize((size, size), Image.LANCZOS)


frames = [draw(size) for size in SIZES]
frames[-1].save(sys.argv[1], format="ICO", append_images=frames[:-1], sizes=[(n, n) for n in SIZES])
