#!/usr/bin/env python3
"""Draws the maps that are shipped with kTools: data/kTools/databases/MapInfo.txt and data/kTools/maps/*.gif.

Every map is grown from a seed of its own name, so a run always writes the same bytes. The files are kept in
the repository; run this again after changing how a map looks. It takes no arguments and needs nothing but
Python.
"""

import heapq
import math
import pathlib
import random

from map_picture import Picture, rgb, shaded

DATA = pathlib.Path(__file__).resolve().parent.parent / "data" / "kTools"

# name, cells wide, cells high, pixels a cell, and the look. A map without a look gets no picture: the picker
# must show that case too. The first one is where a fresh server starts its players.
MAPS = [
    ("alderwick", 300, 280, 1,
     dict(sea=0.06, river=True, forest=0.20, rock=0.04, town=26, fields=5, gates="NESW")),
    ("brackmere", 360, 360, 1,
     dict(sea=0.38, forest=0.25, rock=0.05, town=9, gates="NSW")),
    ("cinderlow", 320, 360, 1,
     dict(sea=0.10, forest=0.06, rock=0.30, town=5, gates="NS", theme="ash")),
    ("daggwood", 360, 300, 1,
     dict(sea=0.04, river=True, forest=0.62, rock=0.03, town=4, gates="EW")),
    ("eelmarsh", 280, 280, 1,
     dict(sea=0.30, forest=0.22, rock=0.0, town=6, gates="NE", theme="marsh", scale=22)),
    ("fallowdown", 360, 260, 1,
     dict(sea=0.03, river=True, forest=0.12, rock=0.02, town=10, fields=16, gates="NEW")),
    ("gullness", 260, 300, 1,
     dict(sea=0.48, island=True, forest=0.18, rock=0.07, town=16, fields=2, gates="N")),
    ("hobdelve1", 200, 200, 2,
     dict(cave=0.52, pools=0.10, gates="NS")),
    ("hobdelve2", 160, 200, 2,
     dict(cave=0.47, pools=0.18, gates="SE", theme="ember")),
    ("ironstile", 340, 340, 1,
     dict(sea=0.04, river=True, forest=0.22, rock=0.42, snow=0.14, town=4, gates="SE")),
    ("junipershaw_hall", 80, 60, 1, None),
    ("kestmoor_keep", 180, 180, 2,
     dict(sea=0.04, forest=0.16, rock=0.05, town=16, wall=True, gates="SW")),
]

THEMES = {
    "green": dict(deep="2f6593", water="4a88b5", sand="d9c792", grass="8bb05c", meadow="a3c06b",
                  wood="5f8a46", rock="94897b", snow="eceef0", crown="3f6b34", crown_lit="6f9a4c"),
    "ash": dict(deep="8f2f1c", water="d2642a", sand="6a5a52", grass="8d8373", meadow="9d937f", wood="6d6a58",
                rock="5b5352", snow="b9b1ab", crown="4a4638", crown_lit="7a735c"),
    "marsh": dict(deep="3f5f55", water="587a68", sand="8a8a5a", grass="839a57", meadow="98a862",
                  wood="5c7547", rock="7d7a68", snow="e0e0d8", crown="40583a", crown_lit="6d8550"),
    "stone": dict(floor="8a7f72", wall="3d3733", edge="2a2624", deep="2c5573", water="41779c", lamp="ffd76a"),
    "ember": dict(floor="84695c", wall="3a2c2a", edge="271d1c", deep="9c3a1a", water="dd7a2c", lamp="ffe08a"),
}
ROAD, ROAD_EDGE, PLANK, PLANK_EDGE = "dcc9a0", "b39c74", "a8794a", "6e4c2c"
PAVED, STONE, STONE_LIT, SHADOW, GATE, GATE_LIT = "cbbfa9", "7c7771", "b3aea6", "4b4a3a", "3f3fb8", "a9b4ff"
ROOFS = [("b5523b", "8e3d2c"), ("a96f3d", "84542c"), ("6f7f96", "566478"), ("8f5a6b", "6f4452")]
FIELDS = [("d8c45e", "c3ad4a"), ("a7b84d", "8fa33f"), ("b98d57", "a37746")]


def noise(rng, width, height, cell, octaves=4):
    """Value noise in rows, the first octave with lattice points `cell` pixels apart."""
    field = [[0.0] * width for _ in range(height)]
    weight = 1.0
    for _ in range(octaves):
        columns, rows = int(width / cell) + 3, int(height / cell) + 3
        lattice = [[rng.random() for _ in range(columns)] for _ in range(rows)]
        steps = [(int(x / cell), smooth(x / cell % 1.0)) for x in range(width)]
        for y in range(height):
            top, bottom = lattice[int(y / cell)], lattice[int(y / cell) + 1]
            down = smooth(y / cell % 1.0)
            across = [a + (b - a) * down for a, b in zip(top, bottom)]
            row = field[y]
            for x, (left, t) in enumerate(steps):
                row[x] += weight * (across[left] + (across[left + 1] - across[left]) * t)
        weight *= 0.45
        cell = max(cell / 2, 1)
    return field


def smooth(t):
    return t * t * (3 - 2 * t)


def level(field, share):
    """The value below which `share` of the field lies."""
    values = sorted(value for row in field for value in row)
    return values[min(len(values) - 1, int(share * len(values)))]


def draw_gate(picture, x, y):
    """Where one leaves the map: it must be found at a glance."""
    picture.disc(x, y, 6.5, SHADOW)
    picture.disc(x, y, 5.5, GATE_LIT)
    picture.disc(x, y, 4, GATE)
    picture.disc(x - 1, y - 1, 1.5, GATE_LIT)


class Land:
    """An open-air map."""

    def __init__(self, rng, width, height, look):
        self.rng, self.look = rng, look
        self.width, self.height = width, height
        self.colours = THEMES[look.get("theme", "green")]
        self.picture = Picture(width, height)
        self.centre = (width // 2 + rng.randint(-15, 15), height // 2 + rng.randint(-15, 15))
        self.roads = []
        self.taken = [[False] * width for _ in range(height)]
        self.relief = noise(rng, width, height, look.get("scale", 70))
        self.shape_relief()
        self.ground = self.choose_ground()
        if look.get("river"):
            self.carve_river()

    def shape_relief(self):
        # The town stands on a gentle rise, an island falls off to all sides.
        for y, row in enumerate(self.relief):
            for x in range(self.width):
                away = math.hypot((x - self.centre[0]) / self.width, (y - self.centre[1]) / self.height)
                if self.look.get("island"):
                    row[x] -= 2.6 * away * away
                elif away < 0.2:
                    middle = 0.95
                    row[x] += (middle - row[x]) * smooth(1 - away / 0.2) * 0.9

    def choose_ground(self):
        look = self.look
        sea, rock = level(self.relief, look["sea"]), level(self.relief, 1 - look["rock"])
        snow = level(self.relief, 1 - look.get("snow", 0))
        cover = noise(self.rng, self.width, self.height, 45)
        wood, meadow = level(cover, 1 - look["forest"]), level(cover, 0.35)

        def of(h, c):
            if h < sea:
                return "deep" if h < sea - 0.14 else "water"
            if look.get("snow") and h > snow:
                return "snow"
            if look["rock"] and h > rock:
                return "rock"
            if h < sea + 0.025:
                return "sand"
            return "wood" if c > wood else "meadow" if c < meadow else "grass"

        return [[of(h, c) for h, c in zip(*rows)] for rows in zip(self.relief, cover)]

    def carve_river(self):
        phase = self.rng.random() * 6
        across = self.width * self.rng.uniform(0.22, 0.34)
        for y in range(self.height):
            middle = across + 22 * math.sin(y / 41 + phase) + 8 * math.sin(y / 15 + 2 * phase)
            for x in range(self.width):
                distance = abs(x - middle)
                if distance < 5:
                    self.ground[y][x] = "deep" if distance < 2 else "water"
                elif distance < 7 and self.ground[y][x] not in ("deep", "water"):
                    self.ground[y][x] = "sand"

    def wet(self, x, y):
        return self.ground[y][x] in ("deep", "water")

    def paint_ground(self):
        steps = (0.88, 1.0, 1.09)
        for y in range(self.height):
            for x in range(self.width):
                ground = self.ground[y][x]
                colour = rgb(self.colours[ground])
                if ground not in ("deep", "water"):
                    # Light from the north-west, in three steps: more would cost size and show nothing.
                    nx, ny = min(x + 3, self.width - 1), min(y + 3, self.height - 1)
                    slope = self.relief[ny][nx] - self.relief[y][x]
                    colour = shaded(colour, steps[0 if slope < -0.07 else 2 if slope > 0.07 else 1])
                self.picture.pixels[y][x] = colour

    def plant_trees(self):
        for top in range(3, self.height - 4, 6):
            for left in range(3, self.width - 4, 6):
                x, y = left + self.rng.randint(-2, 2), top + self.rng.randint(-2, 2)
                ground = self.ground[y][x]
                lonely = ground in ("grass", "meadow") and self.rng.random() < 0.04
                if (ground == "wood" and self.rng.random() < 0.8 or lonely) and not self.taken[y][x]:
                    self.picture.disc(x, y, 2.3, self.colours["crown"])
                    self.picture.disc(x - 1, y - 1, 1, self.colours["crown_lit"])

    def way(self, start, goal):
        """Cheapest way over the land in steps of 4 pixels; water can be bridged, at a price."""
        step = 4
        price = dict(deep=14, water=9, sand=1.4, grass=1, meadow=1, wood=2, rock=6, snow=8)
        start, goal = ((x // step, y // step) for x, y in (start, goal))
        columns, rows = (self.width - 1) // step, (self.height - 1) // step
        best, origin, queue = {start: 0.0}, {}, [(0.0, start)]
        while queue:
            _, at = heapq.heappop(queue)
            if at == goal:
                break
            for dx, dy in ((1, 0), (-1, 0), (0, 1), (0, -1), (1, 1), (1, -1), (-1, 1), (-1, -1)):
                to = (at[0] + dx, at[1] + dy)
                if not (0 <= to[0] <= columns and 0 <= to[1] <= rows):
                    continue
                x, y = to[0] * step, to[1] * step
                climb = 3 if self.relief[y][x] > 1.3 else 0
                cost = best[at] + math.hypot(dx, dy) * (price[self.ground[y][x]] + climb)
                if cost < best.get(to, math.inf):
                    best[to], origin[to] = cost, at
                    heapq.heappush(queue, (cost + math.dist(to, goal), to))
        points = [goal]
        while points[-1] != start:
            points.append(origin[points[-1]])
        return rounded([(x * step, y * step) for x, y in points])

    def build_road(self, points, width=2.6):
        self.roads += points
        for edge in (True, False):
            for x, y in points:
                ix, iy = min(max(round(x), 0), self.width - 1), min(max(round(y), 0), self.height - 1)
                bridge = self.wet(ix, iy)
                colour = (PLANK_EDGE if bridge else ROAD_EDGE) if edge else (PLANK if bridge else ROAD)
                self.picture.disc(x, y, width + 0.8 if edge else width - 0.4, colour)
                if edge:
                    self.take(ix - 4, iy - 4, 8, 8)

    def take(self, left, top, width, height):
        for y in range(max(top, 0), min(top + height, self.height)):
            for x in range(max(left, 0), min(left + width, self.width)):
                self.taken[y][x] = True

    def free(self, left, top, width, height):
        if left < 6 or top < 6 or left + width > self.width - 6 or top + height > self.height - 6:
            return False
        return not any(self.taken[y][x] or self.ground[y][x] in ("deep", "water", "rock", "snow")
                       for y in range(top, top + height) for x in range(left, left + width))

    def build_house(self, left, top, width, height):
        lit, dark = self.rng.choice(ROOFS)
        self.picture.box(left + 2, top + 2, width, height, SHADOW)
        if width >= height:
            self.picture.box(left, top, width, height // 2, lit)
            self.picture.box(left, top + height // 2, width, height - height // 2, dark)
        else:
            self.picture.box(left, top, width // 2, height, lit)
            self.picture.box(left + width // 2, top, width - width // 2, height, dark)
        self.take(left - 2, top - 2, width + 5, height + 5)

    def build_town(self, reach):
        x, y = self.centre
        self.picture.disc(x, y, 13, ROAD_EDGE)
        self.picture.disc(x, y, 12, PAVED)
        self.picture.disc(x, y, 4, STONE)
        self.picture.disc(x, y, 2.6, self.colours["water"])
        self.take(x - 14, y - 14, 28, 28)
        built = 0
        for attempt in range(3000):
            if built == self.look["town"]:
                break
            distance = reach * (0.35 + 0.65 * attempt / 3000)
            angle = self.rng.random() * 2 * math.pi
            width, height = self.rng.randint(8, 15), self.rng.randint(7, 12)
            left = round(x + distance * math.cos(angle)) - width // 2
            top = round(y + distance * math.sin(angle)) - height // 2
            if self.free(left, top, width, height):
                self.build_house(left, top, width, height)
                built += 1

    def near_road(self, x, y, reach):
        return any(math.dist((x, y), point) < reach for point in self.roads)

    def build_wall(self, radius):
        def corners(turn):
            return [(self.centre[0] + radius * math.cos(math.pi * (k + turn) / 4),
                     self.centre[1] + radius * math.sin(math.pi * (k + turn) / 4)) for k in range(8)]

        # Turned so that no tower stands on a road.
        towers = max((corners(turn / 10) for turn in range(10)),
                     key=lambda spots: min(math.dist(spot, point) for spot in spots for point in self.roads))
        line = []
        for start, goal in zip(towers, towers[1:] + towers[:1]):
            length = round(math.dist(start, goal))
            line += [tuple(a + (b - a) * i / length for a, b in zip(start, goal)) for i in range(length)]
        line = [place for place in line if not self.near_road(*place, 9)]
        for size, lift, colour in ((3.6, -1, SHADOW), (3, 0, STONE), (1.2, 1, STONE_LIT)):
            for x, y in line:
                self.picture.disc(x, y - lift, size, colour)
        for x, y in towers:
            self.picture.disc(x + 1, y + 1, 8, SHADOW)
            self.picture.disc(x, y, 7, STONE)
            self.picture.disc(x - 0.5, y - 1, 5, STONE_LIT)
            self.picture.disc(x - 0.5, y - 1, 2, STONE)
        for x, y in line + towers:
            self.take(round(x) - 8, round(y) - 8, 16, 16)

    def lay_fields(self):
        laid = 0
        for _ in range(2000):
            if laid == self.look.get("fields", 0):
                return
            width, height = self.rng.randint(22, 40), self.rng.randint(18, 32)
            left, top = self.rng.randrange(self.width), self.rng.randrange(self.height)
            if not self.free(left, top, width, height):
                continue
            light, dark = self.rng.choice(FIELDS)
            upright = self.rng.random() < 0.5
            self.picture.box(left - 1, top - 1, width + 2, height + 2, self.colours["crown"])
            for y in range(top, top + height):
                for x in range(left, left + width):
                    self.picture.put(x, y, light if ((x - left) if upright else (y - top)) // 2 % 2 else dark)
            self.take(left - 5, top - 5, width + 10, height + 10)
            laid += 1

    def dry(self, x, y):
        """The place, or the nearest to it on the same edge that is no water."""
        for shift in sorted(range(-120, 121), key=abs):
            for place in ((x + shift, y), (x, y + shift)):
                inside = 8 <= place[0] < self.width - 8 and 8 <= place[1] < self.height - 8
                if inside and not self.wet(*place):
                    return place
        return (x, y)

    def draw(self):
        self.paint_ground()
        w, h = self.width, self.height
        ends = {"N": (w // 2, 10), "S": (w // 2, h - 11), "W": (10, h // 2), "E": (w - 11, h // 2)}
        gates = []
        for side in self.look["gates"]:
            x, y = ends[side]
            gates.append(self.dry(x + (side in "NS") * self.rng.randint(-60, 60),
                                  y + (side in "EW") * self.rng.randint(-60, 60)))
        for gate in gates:
            self.build_road(self.way(self.centre, gate))
        for x, y in gates:
            self.take(x - 9, y - 9, 18, 18)
        if self.look.get("wall"):
            self.build_wall(min(w, h) * 0.27)
        self.build_town(min(w, h) * (0.24 if self.look.get("wall") else 0.3))
        self.lay_fields()
        self.plant_trees()
        for gate in gates:
            draw_gate(self.picture, *gate)
        return self.picture


def rounded(points):
    """The points of a way without its corners, close enough together to be drawn as discs."""
    for _ in range(3):
        cut = [points[0]]
        for a, b in zip(points, points[1:]):
            cut.append((0.75 * a[0] + 0.25 * b[0], 0.75 * a[1] + 0.25 * b[1]))
            cut.append((0.25 * a[0] + 0.75 * b[0], 0.25 * a[1] + 0.75 * b[1]))
        points = cut + [points[-1]]
    return points


def draw_cave(rng, width, height, look):
    colours = THEMES[look.get("theme", "stone")]
    picture = Picture(width, height, colours["wall"])
    rock = noise(rng, width, height, 52, 3)
    places = {"N": (width // 2, 26), "S": (width // 2, height - 27),
              "W": (26, height // 2), "E": (width - 27, height // 2)}
    gates = [places[side] for side in look["gates"]]
    halls = gates + [(rng.randint(60, width - 60), rng.randint(60, height - 60)) for _ in range(7)]
    for y in range(height):
        for x in range(width):
            rock[y][x] += 3 * smooth(max(0.0, 1 - min(x, y, width - 1 - x, height - 1 - y) / 26))
    # Halls are dug at every gate and at some places between, and tunnels join each to the next.
    joined = sorted(halls, key=lambda hall: hall[1])
    digs = [(x, y, 30) for x, y in halls]
    for (ax, ay), (bx, by) in zip(joined, joined[1:]):
        bend = rng.uniform(-30, 30)
        for i in range(41):
            t = i / 40
            swing = bend * math.sin(math.pi * t)
            digs.append((ax + (bx - ax) * t + swing, ay + (by - ay) * t, 13))
    for cx, cy, radius in digs:
        for y in range(max(0, int(cy - radius)), min(height, int(cy + radius))):
            for x in range(max(0, int(cx - radius)), min(width, int(cx + radius))):
                away = math.hypot(x - cx, y - cy) / radius
                if away < 1:
                    rock[y][x] = min(rock[y][x], 0.35 + 0.55 * away)
    solid = level(rock, look["cave"])
    relief = noise(rng, width, height, 30, 3)
    for y in range(height):
        for x in range(width):
            if rock[y][x] < solid:
                here, there = relief[y][x], relief[max(y - 3, 0)][max(x - 3, 0)]
                step = 0.92 if here > there + 0.07 else 1.06 if here < there - 0.07 else 1.0
                picture.pixels[y][x] = shaded(rgb(colours["floor"]), step)
                # The wall above throws a shadow on the floor.
                if rock[max(y - 5, 0)][max(x - 3, 0)] >= solid:
                    picture.pixels[y][x] = shaded(rgb(colours["floor"]), 0.72)
            elif min(rock[min(y + 5, height - 1)][x], rock[y][min(x + 4, width - 1)], rock[y][max(x - 4, 0)],
                     rock[max(y - 4, 0)][x]) < solid:
                picture.put(x, y, colours["edge"])
    water = noise(rng, width, height, 60, 3)
    pool = level(water, look["pools"])
    for y in range(height):
        for x in range(width):
            if rock[y][x] < solid - 0.12 and water[y][x] < pool:
                picture.put(x, y, colours["deep" if water[y][x] < pool - 0.1 else "water"])
    lamps = []
    for _ in range(5000):
        x, y = rng.randrange(20, width - 20), rng.randrange(20, height - 20)
        by_wall = rock[y][x] < solid <= rock[y - 8][x]
        if by_wall and len(lamps) < 14 and all(math.dist((x, y), lamp) > 45 for lamp in lamps + gates):
            lamps.append((x, y))
            picture.disc(x, y, 2.5, PLANK_EDGE)
            picture.disc(x, y - 1, 1.6, colours["lamp"])
    for x, y in gates:
        draw_gate(picture, x, y)
    return picture


def main():
    (DATA / "databases").mkdir(parents=True, exist_ok=True)
    (DATA / "maps").mkdir(parents=True, exist_ok=True)
    lines = "".join(f"{name}.map,{width},{height}\r\n" for name, width, height, _, _ in MAPS)
    (DATA / "databases" / "MapInfo.txt").write_bytes(lines.encode("ascii"))
    for name, width, height, scale, look in MAPS:
        if look is None:
            continue
        size = (width * scale, height * scale)
        picture = draw_cave(random.Random(name), *size, look) if "cave" in look \
            else Land(random.Random(name), *size, look).draw()
        picture.grid(50 * scale)
        picture.frame()
        picture.save_gif(DATA / "maps" / f"{name}.gif")


if __name__ == "__main__":
    main()
