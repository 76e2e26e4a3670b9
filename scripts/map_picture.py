"""A picture of pixels that can be drawn on and saved as a GIF."""

import math


def rgb(text):
    return tuple(int(text[i:i + 2], 16) for i in (0, 2, 4))


def shaded(colour, factor):
    return tuple(max(0, min(255, round(c * factor))) for c in colour)


class Picture:
    def __init__(self, width, height, colour="000000"):
        self.width, self.height = width, height
        self.pixels = [[rgb(colour)] * width for _ in range(height)]

    def put(self, x, y, colour):
        if 0 <= x < self.width and 0 <= y < self.height:
            self.pixels[y][x] = rgb(colour)

    def box(self, left, top, width, height, colour):
        for y in range(top, top + height):
            for x in range(left, left + width):
                self.put(x, y, colour)

    def disc(self, x, y, radius, colour):
        reach = math.ceil(radius)
        for dy in range(-reach, reach + 1):
            for dx in range(-reach, reach + 1):
                if dx * dx + dy * dy <= radius * radius:
                    self.put(round(x) + dx, round(y) + dy, colour)

    def grid(self, step):
        """Faint lines every `step` pixels from the bottom left, where the cells are counted from."""
        for y in range(self.height):
            for x in range(self.width):
                if (x % step == 0 or (self.height - 1 - y) % step == 0) and 0 < x and y < self.height - 1:
                    self.pixels[y][x] = shaded(self.pixels[y][x], 0.9)

    def frame(self):
        for y in range(self.height):
            for x in range(self.width):
                if min(x, y, self.width - 1 - x, self.height - 1 - y) < 2:
                    self.pixels[y][x] = shaded(self.pixels[y][x], 0.55)

    def save_gif(self, path):
        colours = sorted({pixel for row in self.pixels for pixel in row})
        bits = max(2, (len(colours) - 1).bit_length())
        assert bits <= 8, f"{path.name} has {len(colours)} colours"
        index = {colour: i for i, colour in enumerate(colours)}
        table = b"".join(bytes(colour) for colour in colours).ljust(3 << bits, b"\0")
        size = self.width.to_bytes(2, "little") + self.height.to_bytes(2, "little")
        data = lzw([index[pixel] for row in self.pixels for pixel in row], bits)
        blocks = b"".join(bytes([len(part)]) + part
                          for part in (data[i:i + 255] for i in range(0, len(data), 255)))
        path.write_bytes(b"GIF89a" + size + bytes([0xF0 | (bits - 1), 0, 0]) + table
                         + b"," + bytes(4) + size + b"\0" + bytes([bits]) + blocks + b"\0;")


def lzw(indices, bits):
    """GIF's variable-width LZW: the table starts over when its 12 bits are used up."""
    clear, end = 1 << bits, (1 << bits) + 1
    packed, held, count = bytearray(), 0, 0
    codes, width = {}, bits + 1

    def emit(code):
        nonlocal held, count
        held |= code << count
        count += width
        while count >= 8:
            packed.append(held & 255)
            held >>= 8
            count -= 8

    def start_over():
        nonlocal codes, width
        emit(clear)
        codes, width = {(i,): i for i in range(clear)}, bits + 1

    start_over()
    word = ()
    for index in indices:
        longer = word + (index,)
        if longer in codes:
            word = longer
            continue
        emit(codes[word])
        following = len(codes) + 2
        codes[longer] = following
        if following == 1 << width and width < 12:
            width += 1
        elif following == 4095:
            start_over()
        word = (index,)
    emit(codes[word])
    emit(end)
    packed.append(held & 255)
    return bytes(packed)
