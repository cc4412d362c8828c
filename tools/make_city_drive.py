#!/usr/bin/env python3
"""Makes the sample files city_drive.geojson and district.geojson.

    tools/make_city_drive.py samples

The town is invented and lies in the open sea, so that nobody takes it for a real place. The drive is put together
the way roads are: straights that bend a little, corners rounded by the kerb, a roundabout, a river road that
follows the bank, a loop up to an expressway. Fixed seed: the same files on every run.
"""

import json
import math
import pathlib
import random
import sys

SEED = 20
START_LONGITUDE, START_LATITUDE = -31.4180, 47.2140  # degrees
METRES_PER_DEGREE = 111194.92664455873  # of latitude, sphere of 6371 km
DECIMALS = 7  # of a degree: about a centimetre


class Drive:
    """A car with a pen: moves on, turns, and leaves a vertex where a map maker would put one."""

    def __init__(self, heading_degrees, seed):
        self.random = random.Random(seed)
        self.x = self.y = 0.0  # metres east and north of the start
        self.heading = heading_degrees  # clockwise from north
        self.since_vertex = 0.0
        self.next_vertex = 0.0
        self.points = [(0.0, 0.0)]
        self.metres = 0.0

    def go(self, metres, turn_degrees=0.0, end_turn_degrees=None):
        """Drives `metres` while turning. The turn per metre runs evenly from the first rate to the last, when an
        `end_turn_degrees` is given, as under a hand on a steering wheel. Each says how far the whole would turn at its
        rate."""
        end = turn_degrees if end_turn_degrees is None else end_turn_degrees
        steps = max(1, round(metres))
        step = metres / steps
        for index in range(steps):
            share = (index + 0.5) / steps
            rate = (turn_degrees + (end - turn_degrees) * share) / metres
            self.heading += rate * step
            self.x += step * math.sin(math.radians(self.heading))
            self.y += step * math.cos(math.radians(self.heading))
            self.metres += step
            self.since_vertex += step
            # A chord may leave a bend by some 20 cm; on a straight vertices still come every 20 to 40 m.
            radius = 1.0 / max(abs(math.radians(rate)), 1e-9)
            wanted = min(max(math.sqrt(8.0 * 0.2 * radius), 5.0), self.random.uniform(22.0, 40.0))
            if self.since_vertex >= wanted:
                self.mark()

    def mark(self):
        wobble = self.random.gauss(0.0, 0.12)  # nobody draws a road to the centimetre
        side = math.radians(self.heading + 90.0)
        self.points.append((self.x + wobble * math.sin(side), self.y + wobble * math.cos(side)))
        self.since_vertex = 0.0

    def street(self, metres, bend_degrees=0.0):
        self.go(metres, bend_degrees)

    def corner(self, degrees, radius=9.0):
        """A junction: a tight arc, to the right when positive."""
        self.go(radius * math.radians(abs(degrees)), degrees)

    def roundabout(self, net_degrees):
        """In on the right, round to the left, out on the right; `net_degrees` is the turn of the whole."""
        self.corner(52.0, 16.0)
        self.corner(net_degrees - 104.0, 19.0)
        self.corner(52.0, 16.0)


def city_drive():
    drive = Drive(heading_degrees=61.0, seed=SEED)
    # Out of a side street and through the old quarter: blocks of unlike size, streets that bend together.
    drive.street(148.0, 4.0)
    drive.corner(-86.0)
    drive.street(212.0, 5.0)
    drive.corner(93.0)
    drive.street(176.0, 6.0)
    drive.corner(88.0)
    drive.street(118.0, -3.0)
    drive.corner(-91.0)
    drive.street(330.0, 9.0)
    drive.corner(-82.0, 12.0)
    drive.street(245.0, 4.0)
    # A roundabout, third exit, and down the avenue to the river.
    drive.roundabout(-84.0)
    drive.street(420.0, -11.0)
    drive.corner(78.0, 14.0)
    drive.street(190.0, -5.0)
    drive.corner(64.0, 22.0)
    # The river road follows the bank.
    for metres, degrees in ((260.0, -24.0), (310.0, 41.0), (240.0, -38.0), (330.0, 46.0), (220.0, -27.0)):
        drive.go(metres / 2.0, 0.0, degrees)
        drive.go(metres / 2.0, degrees, 0.0)
    # Over the bridge, then up the loop onto the expressway.
    drive.corner(84.0, 16.0)
    drive.street(260.0)
    drive.go(70.0, 0.0, 62.0)
    drive.go(200.0, 178.0)
    drive.go(75.0, 66.0, 0.0)
    drive.street(190.0)
    drive.go(330.0, 0.0, 40.0)
    drive.go(520.0, 58.0, 66.0)
    drive.go(300.0, 44.0, 8.0)
    drive.go(240.0, 6.0, -20.0)
    # Off at the next exit and home through the new quarter.
    drive.go(120.0, 0.0, 42.0)
    drive.go(90.0, 31.0, 0.0)
    drive.corner(71.0, 13.0)
    drive.street(310.0, -7.0)
    drive.corner(-88.0)
    drive.street(165.0, -4.0)
    drive.corner(90.0)
    drive.street(285.0, 6.0)
    drive.roundabout(24.0)
    drive.street(205.0, -5.0)
    drive.corner(88.0)
    drive.street(240.0, 7.0)
    drive.corner(-92.0)
    drive.street(320.0, -12.0)
    drive.corner(-86.0)
    drive.street(260.0, 4.0)
    drive.corner(91.0)
    drive.street(130.0, 3.0)
    drive.mark()
    return drive


def position(x, y):
    latitude = START_LATITUDE + y / METRES_PER_DEGREE
    longitude = START_LONGITUDE + x / (METRES_PER_DEGREE * math.cos(math.radians(START_LATITUDE)))
    return [round(longitude, DECIMALS), round(latitude, DECIMALS)]


def district():
    """The riverside quarter: a rounded, uneven ring, counter-clockwise."""
    generator = random.Random(SEED)
    ring = []
    for corner in range(28):
        angle = math.radians(corner * 360.0 / 28.0)
        radius = 520.0 + 70.0 * math.sin(3.0 * angle + 0.6) + generator.uniform(-28.0, 28.0)
        ring.append(position(980.0 + 0.9 * radius * math.cos(angle), 1270.0 + 0.8 * radius * math.sin(angle)))
    return ring + ring[:1]


def write(path, feature):
    collection = {"type": "FeatureCollection", "features": [feature]}
    path.write_text(json.dumps(collection, separators=(",", ":")) + "\n", encoding="utf-8")


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "samples")
    drive = city_drive()
    write(folder / "city_drive.geojson", {
        "type": "Feature",
        "properties": {"name": "A drive through an invented town"},
        "geometry": {"type": "LineString", "coordinates": [position(x, y) for x, y in drive.points]},
    })
    write(folder / "district.geojson", {
        "type": "Feature",
        "properties": {"name": "The riverside quarter"},
        "geometry": {"type": "Polygon", "coordinates": [district()]},
    })
    print(f"{drive.metres:.0f} m, {len(drive.points)} vertices")


if __name__ == "__main__":
    main()
