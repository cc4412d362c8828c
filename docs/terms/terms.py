#!/usr/bin/env python3
"""What the drawings of the terms need besides the tool's own results: helping lines, as GeoJSON on standard output.

  segments LINE               each segment as a line of its own, labelled with its number
  vertices LINE               each vertex as a point, with what `vorel measure --table` says of it
  join POINTS RESULTS         a line from each point to the one of the same number
  north POINTS METRES         a line northward from each point
  first POINTS COUNT          the first points alone
  only FILE KEY VALUE         the features with that property
  trace POINTS                the points as one line; a single one twice
"""

import csv
import json
import sys


def features(path):
    with open(path) as file:
        return json.load(file)["features"]


def line(coordinates, **properties):
    return {"type": "Feature", "properties": properties, "geometry": {"type": "LineString", "coordinates": coordinates}}


def point(coordinates, **properties):
    return {"type": "Feature", "properties": properties, "geometry": {"type": "Point", "coordinates": coordinates}}


def segments(path):
    points = features(path)[0]["geometry"]["coordinates"]
    return [line([a, b], label=f"segment {i}") for i, (a, b) in enumerate(zip(points, points[1:]))]


def vertices(path):
    with open(path) as file:
        rows = list(csv.DictReader(file))
    return [point([float(row["longitude"]), float(row["latitude"])], label=f"{float(row['metres']):.0f} m") for row in rows]


def join(points, results):
    return [line([a["geometry"]["coordinates"][:2], b["geometry"]["coordinates"][:2]])
            for a, b in zip(features(points), features(results)) if b["properties"].get("matched", True)]


def north(path, metres):
    lines = []
    for feature in features(path):
        longitude, latitude = feature["geometry"]["coordinates"][:2]
        lines.append(line([[longitude, latitude], [longitude, latitude + float(metres) / 111190.0]]))
    return lines


def first(path, count):
    return features(path)[:int(count)]


def only(path, key, value):
    return [feature for feature in features(path) if feature["properties"][key] == value]


def trace(path):
    points = [feature["geometry"]["coordinates"] for feature in features(path)]
    return [line(points if len(points) > 1 else 2 * points)]


def main():
    command, *arguments = sys.argv[1:]
    commands = [segments, vertices, join, north, first, only, trace]
    found = {each.__name__: each for each in commands}[command](*arguments)
    json.dump({"type": "FeatureCollection", "features": found}, sys.stdout)


main()
