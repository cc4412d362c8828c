#!/usr/bin/env python3
"""Makes the sample files lanes.geojson and trace.geojson.

    tools/make_lanes.py samples

A junction of the invented town that make_city_drive.py draws: a road of two lanes climbs over a low bridge, bends, and
one lane leaves it to turn back in a loop. The trace is a drive along the right-hand lane and the loop as a receiver
sees it: a fix each second, some decimetres off, with a stop and one fix far away. Fixed seed: the same files on every
run.
"""

import json
import math
import pathlib
import random
import sys

SEED = 21
START_LONGITUDE, START_LATITUDE = -31.4065, 47.2216  # degrees
METRES_PER_DEGREE = 111194.92664455873  # of latitude, sphere of 6371 km
DECIMALS = 8  # of a degree: about a millimetre
LANE_WIDTH = 3.5  # metres
VERTEX_METRES = 4.0


def position(x, y, height):
    latitude = START_LATITUDE + y / METRES_PER_DEGREE
    longitude = START_LONGITUDE + x / (METRES_PER_DEGREE * math.cos(math.radians(START_LATITUDE)))
    return [round(longitude, DECIMALS), round(latitude, DECIMALS), round(height, 2)]


class Road:
    """The middle of a lane, with heading and height, in steps of a few metres."""

    def __init__(self, x, y, heading_degrees):
        self.x, self.y, self.heading = x, y, heading_degrees
        self.metres = 0.0
        self.states = [(x, y, heading_degrees, height(0.0))]

    def go(self, metres, turn_degrees=0.0):
        steps = max(1, round(metres / VERTEX_METRES))
        for _ in range(steps):
            self.heading += turn_degrees / steps / 2.0
            self.x += metres / steps * math.sin(math.radians(self.heading))
            self.y += metres / steps * math.cos(math.radians(self.heading))
            self.heading += turn_degrees / steps / 2.0
            self.metres += metres / steps
            self.states.append((self.x, self.y, self.heading, height(self.metres)))
        return self


def height(metres):
    """Metres above the sea: flat, then over the bridge and down again."""
    return 12.0 + 5.2 * math.exp(-(((metres - 120.0) / 45.0) ** 2))


def beside(states, metres):
    """The states moved to the right."""
    moved = []
    for x, y, heading, level in states:
        side = math.radians(heading + 90.0)
        moved.append((x + metres * math.sin(side), y + metres * math.cos(side), heading, level))
    return moved


def line(lane_id, kind, states):
    return {
        "type": "Feature",
        "properties": {"id": lane_id, "kind": kind},
        "geometry": {"type": "LineString", "coordinates": [position(x, y, level) for x, y, _, level in states]},
    }


def trace(states, generator):
    """A fix every second at some 10 m/s, with a stop of four seconds and one outlier."""
    fixes = []
    for index in range(0, len(states), 2):
        x, y, _, level = states[index]
        stop = 4 if index == 30 else 1
        fix = position(x + generator.gauss(0.0, 0.6), y + generator.gauss(0.0, 0.6), level + generator.gauss(0.0, 0.4))
        fixes += [fix] * stop
    x, y, _, level = states[40]
    fixes.insert(24, position(x + 70.0, y - 55.0, level))
    return {
        "type": "Feature",
        "properties": {"kind": "trace", "name": "A drive over the bridge of an invented town"},
        "geometry": {"type": "LineString", "coordinates": fixes},
    }


def write(path, features):
    collection = {"type": "FeatureCollection", "features": features}
    text = json.dumps(collection, separators=(",", ":")).replace('{"type":"Feature",', '\n{"type":"Feature",')
    path.write_text(text + "\n", encoding="utf-8")


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "samples")
    middle = Road(0.0, 0.0, 58.0).go(200.0).go(90.0, 46.0).go(60.0)
    half = LANE_WIDTH / 2.0
    right = beside(middle.states, half)
    loop = Road(*right[-1][:3]).go(20.0).go(14.0 * math.radians(150.0), 150.0).go(36.0).go(6.0 * math.pi, 180.0).go(20.0)
    loop_states = [(x, y, heading, 12.0) for x, y, heading, _ in loop.states]
    write(folder / "lanes.geojson", [
        line("right", "lane", right),
        line("left", "lane", beside(middle.states, -half)[::-1]),
        line("loop", "lane", loop_states),
        line("kerb", "boundary", beside(middle.states, LANE_WIDTH)),
        line("centre", "boundary", middle.states),
    ])
    write(folder / "trace.geojson", [trace(right + loop_states[1:], random.Random(SEED))])
    print(f"{middle.metres:.0f} m and {loop.metres:.0f} m")


if __name__ == "__main__":
    main()
