#!/usr/bin/env python3
"""Writes tests/golden/distance_pairs.csv: pairs of points of every class with their exact WGS-84 distance.

    make_distance_pairs.py > tests/golden/distance_pairs.csv

Needs Python 3 with mpmath (Debian: python3-mpmath). No series and no code of the library is used: the length and
longitude integrals of a geodesic (C. F. F. Karney, Algorithms for geodesics, Journal of Geodesy 87, 43-55, 2013,
equations 7 and 8) are integrated by Gauss-Legendre quadrature of 48 nodes at 40 digits, and the azimuth at the first
point is found by bracketing. Every coordinate is a double, printed so that it reads back as the same double; the
distance is exact for those very doubles to the digits shown.
"""

import random
import sys

import mpmath
from mpmath import mpf

mpmath.mp.dps = 40

A = mpf(6378137)
F = mpf(10**9) / mpf(298257223563)
B = A * (1 - F)
SECOND_E2 = F * (2 - F) / (1 - F) ** 2


def gauss_legendre(count):
    nodes = []
    for i in range(1, count + 1):
        x = mpmath.cos(mpmath.pi * (i - mpf(1) / 4) / (count + mpf(1) / 2))
        for _ in range(8):
            p0, p1 = mpf(1), x
            for k in range(2, count + 1):
                p0, p1 = p1, ((2 * k - 1) * x * p1 - (k - 1) * p0) / k
            slope = count * (x * p1 - p0) / (x * x - 1)
            x -= p1 / slope
        nodes.append((x, 2 / ((1 - x * x) * slope**2)))
    return nodes


NODES = gauss_legendre(48)


def integrals(k2, low, high):
    """Length over b, and the longitude integral, from arc `low` to arc `high`."""
    middle, half = (low + high) / 2, (high - low) / 2
    length = longitude = mpf(0)
    for x, weight in NODES:
        root = mpmath.sqrt(1 + k2 * mpmath.sin(middle + half * x) ** 2)
        length += weight * root
        longitude += weight * (2 - F) / (1 + (1 - F) * root)
    return half * length, half * longitude


def reduced(latitude):
    radians = latitude * mpmath.pi / 180
    if abs(latitude) == 90:
        return mpmath.sign(latitude) * mpmath.pi / 2
    return mpmath.atan((1 - F) * mpmath.tan(radians))


def distance(longitude1, latitude1, longitude2, latitude2):
    """Exact length in metres of the shortest geodesic between two points given as doubles, degrees."""
    lat1, lat2 = mpf(latitude1), mpf(latitude2)
    with mpmath.workdps(400):  # longitudes of any size are folded without a rounding
        turn = (mpf(longitude2) - mpf(longitude1)) % 360
        turn = min(turn, 360 - turn)
    if abs(lat1) < abs(lat2):
        lat1, lat2 = lat2, lat1
    if lat1 > 0:
        lat1, lat2 = -lat1, -lat2
    beta1, beta2 = reduced(lat1), reduced(lat2)
    lambda12 = turn * mpmath.pi / 180
    if turn == 0 or lat1 == -90:
        return B * integrals(SECOND_E2, beta1, beta2)[0]
    if turn == 180:
        return B * integrals(SECOND_E2, -mpmath.pi - beta1, beta2)[0]
    if lat1 == 0 and turn <= 180 * (1 - F):
        return A * lambda12
    cos1, cos2 = mpmath.cos(beta1), mpmath.cos(beta2)
    sin1, sin2 = mpmath.sin(beta1), mpmath.sin(beta2)

    def follow(alpha1):
        sin_alpha0 = abs(mpmath.sin(alpha1)) * cos1  # sin(pi) rounds below 0
        north1 = mpmath.cos(alpha1) * cos1
        north2 = mpmath.sqrt(max(mpf(0), north1**2 + (cos2 - cos1) * (cos2 + cos1)))
        if lat1 == 0:  # beyond the reach of the equator: a geodesic that leaves southward, node to node
            sigma1, sigma2, omega1, omega2 = -mpmath.pi, mpf(0), -mpmath.pi, mpf(0)
        else:
            sigma1, sigma2 = mpmath.atan2(sin1, north1), mpmath.atan2(sin2, north2)
            omega1 = mpmath.atan2(sin_alpha0 * sin1, north1)
            omega2 = mpmath.atan2(sin_alpha0 * sin2, north2)
        length, longitude = integrals(SECOND_E2 * (1 - sin_alpha0**2), sigma1, sigma2)
        return B * length, omega2 - omega1 - F * sin_alpha0 * longitude - lambda12

    low = mpmath.pi / 2 if lat1 == 0 else mpf(0)
    high = mpmath.pi
    low_miss, high_miss = follow(low)[1], follow(high)[1]
    if low_miss > 0 or high_miss < 0:
        raise AssertionError("the azimuth is not bracketed: %r %r %r: %s %s" % (lat1, lat2, turn, low_miss, high_miss))
    # Illinois: regula falsi that halves the weight of an end that stays; a halving of the interval now and then.
    side, steps = 0, 0
    while high - low > mpf(10) ** -36:
        steps += 1
        if steps % 5 == 0 or high_miss == low_miss:
            alpha = (low + high) / 2
        else:
            alpha = (low * high_miss - high * low_miss) / (high_miss - low_miss)
        length, miss = follow(alpha)
        if abs(miss) < mpf(10) ** -34:
            return length
        if miss < 0:
            low, low_miss = alpha, miss
            if side == -1:
                high_miss /= 2
            side = -1
        else:
            high, high_miss = alpha, miss
            if side == 1:
                low_miss /= 2
            side = 1
    return follow((low + high) / 2)[0]


def pairs():
    """(class, longitude1, latitude1, longitude2, latitude2)"""
    rng = random.Random(20251)
    out = []

    def add(name, *coordinates):
        out.append((name,) + tuple(float(c) for c in coordinates))

    def any_longitude():
        return rng.uniform(-180, 180)

    latitudes = [-89.9, -75.0, -60.5, -45.0, -30.25, -12.0, 0.0, 7.5, 23.4, 39.9, 51.5, 66.6, 78.2, 89.9]
    for latitude in latitudes:
        for size in (1e-8, 1e-5, 1e-3, 0.02, 0.07):
            longitude = any_longitude()
            add("near", longitude, latitude, longitude + rng.uniform(-size, size), latitude + rng.uniform(-size, size))
    for latitude in latitudes[1:-1]:
        add("near_border", 10.0, latitude, 10.0 + 0.0999, latitude + 0.0999)
        add("near_border", 10.0, latitude, 10.0 + 0.1001, latitude - 0.1001)
    for latitude in latitudes[1:-1]:
        for size in (0.3, 1.0, 2.7):
            longitude = any_longitude()
            add("mid", longitude, latitude, longitude + rng.uniform(-size, size), latitude + rng.uniform(-size, size))
        add("mid_border", -20.0, latitude, -20.0 + 2.7499, latitude + 2.7499)
        add("mid_border", -20.0, latitude, -20.0 + 2.7501, latitude - 2.7501)
    for _ in range(50):
        add("far", any_longitude(), rng.uniform(-90, 90), any_longitude(), rng.uniform(-90, 90))
    for size in (1e-7, 1e-3, 0.04, 1.0, 30.0):
        latitude = rng.uniform(-70, 70)
        add("antimeridian", 180 - size, latitude, -180 + size, latitude + size / 3)
        add("antimeridian", -180 + size, latitude, 180 - size, latitude)
        add("antimeridian", 180.0, latitude, -180.0, latitude + size)
    for size in (1e-12, 1e-9, 1e-6, 1e-3, 0.5, 3.0, 40.0):
        add("pole", 12.0, 90.0, -101.0, 90.0 - size)
        add("pole", 12.0, -90.0 + size, 192.0, -90.0 + size / 3)
        add("pole", 12.0, 90.0 - size, 90.0, 90.0 - size / 2)
    add("pole", 0.0, 90.0, 77.0, 90.0)
    add("pole", 0.0, -90.0, 180.0, -90.0)
    add("pole", 0.0, -90.0, 33.0, 90.0)
    for size in (1e-6, 0.05, 2.0, 20.0, 90.0, 179.0, 179.39, 179.4, 179.6, 179.99):
        add("equator", -30.0, 0.0, -30.0 + size, 0.0)
    for latitude in (-89.0, -40.0, 0.0, 0.5, 40.0, 90.0):
        add("meridian", 25.5, -40.0, 25.5, latitude)
        add("meridian", 25.5, -40.0, -154.5, latitude)
    for latitude in (0.0, 1e-9, 0.3, 15.0, 30.0, 59.0, 75.0, 89.0, 89.9999):
        add("antipodal", 5.0, latitude, -175.0, -latitude)
        for longitude_off, latitude_off in ((0.3, 0.0), (0.59, 0.02), (0.02, 0.3), (0.5, 0.5), (1e-7, 1e-7), (1.5, 0.2)):
            add("nearly_antipodal", 5.0, latitude, 185.0 - longitude_off, -latitude + latitude_off)
    for turns in (-7, -1, 1, 2, 1000000):
        add("whole_turn", 40.25, 33.0, 40.25 + 360.0 * turns, 33.0)
        add("whole_turn", 40.25, 33.0, 40.5 + 360.0 * turns, 33.25)
    add("whole_turn", 1e15 + 0.125, 10.0, 1.0, 10.0)
    add("whole_turn", 1.7e308, 10.0, -1.7e308, 11.0)
    add("equal", 116.3, 39.9, 116.3, 39.9)
    add("equal", 0.0, 0.0, -0.0, -0.0)
    return out


def main():
    lines = ["class,longitude1,latitude1,longitude2,latitude2,metres"]
    for row in pairs():
        metres = distance(*row[1:])
        text = mpmath.nstr(metres, 22, strip_zeros=False) if metres != 0 else "0"
        lines.append("%s,%r,%r,%r,%r,%s" % (row + (text,)))
    sys.stdout.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
