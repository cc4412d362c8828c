#!/usr/bin/env python3
"""Derives every coefficient of base/geodesy/series_coefficients.h from the two defining constants of WGS-84.

    derive_distance_series.py                 prints the header
    derive_distance_series.py --check FILE    compares FILE with what is derived: exit 0 when every number is the
                                              same double and no constant is missing or added, 1 otherwise,
                                              77 when a needed package is missing
    derive_distance_series.py --report        prints the closed forms behind the fits

Needs Python 3 with mpmath and sympy (Debian: python3-mpmath, python3-sympy).

The squared distance as a series. Let F be the squared length of the geodesic between two points over the squared
semi-major axis, as a function of the mid latitude phi, the latitude difference U and the longitude difference V
(radians). A distance satisfies the eikonal equation at each of its ends; for F at the second point it reads

    (dF/dphi / 2 + dF/dU)^2 / M^2 + (dF/dV)^2 / (N cos)^2 = 4 F,     M, N cos taken at phi + U / 2,

with M the meridian's radius of curvature and N cos the radius of the parallel, over the semi-major axis. Write
F = F2 + F4 + F6 + ..., each homogeneous in (U, V). The leading term is F2 = M^2 U^2 + (N cos)^2 V^2, and because
dF2/dU = 2 M^2 U, dF2/dV = 2 (N cos)^2 V, the part of the equation that is linear in Fk is, by Euler's theorem on
homogeneous functions, 4 (U d/dU + V d/dV) Fk - 4 Fk = 4 (k - 1) Fk. So Fk = -R / (4 (k - 1)), R being the terms
of degree k that the lower orders leave over. No equation system is solved, no series is inverted.
"""

import argparse
import re
import sys

try:
    import mpmath
    import sympy
    from mpmath import mpf
    from sympy import QQ
except ImportError as error:
    print("%s: %s" % (sys.argv[0], error), file=sys.stderr)
    sys.exit(77)  # what CTest is told to take for "skipped"

mpmath.mp.dps = 50

INVERSE_FLATTENING = QQ(298257223563, 10**9)
SEMI_MAJOR_AXIS = QQ(6378137)
FLATTENING = 1 / INVERSE_FLATTENING
ECCENTRICITY_SQUARED = FLATTENING * (2 - FLATTENING)

RADIANS_PER_DEGREE = mpmath.pi / 180


def to_mpf(rational):
    return mpf(int(rational.numerator)) / mpf(int(rational.denominator))


A = to_mpf(SEMI_MAJOR_AXIS)
E2 = to_mpf(ECCENTRICITY_SQUARED)

# ----------------------------------------------------------------------------- the two-point series, exactly

FIELD = QQ.frac_field(sympy.Symbol("e2"), sympy.Symbol("y"))  # rational functions of e^2 and y = sin^2 phi
E2_SYMBOL, Y = FIELD.gens


def y_derivative(f):
    return FIELD.field(f).diff(Y)


class Trigonometric:
    """even(y) + sin phi cos phi odd(y): the functions of phi that occur, closed under + * and d/dphi."""

    __slots__ = ("even", "odd")

    def __init__(self, even=FIELD.zero, odd=FIELD.zero):
        self.even, self.odd = even, odd

    def __add__(self, other):
        return Trigonometric(self.even + other.even, self.odd + other.odd)

    def __mul__(self, other):
        return Trigonometric(
            self.even * other.even + self.odd * other.odd * Y * (1 - Y),
            self.even * other.odd + self.odd * other.even,
        )

    def scaled(self, factor):
        return Trigonometric(self.even * factor, self.odd * factor)

    def derivative(self):
        # dy/dphi = 2 sin cos; d(sin cos)/dphi = 1 - 2 y
        return Trigonometric(
            (1 - 2 * Y) * self.odd + 2 * Y * (1 - Y) * y_derivative(self.odd),
            2 * y_derivative(self.even),
        )

    def is_zero(self):
        return self.even == 0 and self.odd == 0


class TwoPointSeries(dict):
    """Polynomial in U and V: (power of U, power of V) -> Trigonometric."""

    def add_term(self, powers, coefficient):
        total = self[powers] + coefficient if powers in self else coefficient
        if total.is_zero():
            self.pop(powers, None)
        else:
            self[powers] = total

    def plus(self, other, factor=FIELD.one):
        out = TwoPointSeries(self)
        for powers, coefficient in other.items():
            out.add_term(powers, coefficient.scaled(factor))
        return out

    def times(self, other, max_degree):
        out = TwoPointSeries()
        for (u1, v1), c1 in self.items():
            for (u2, v2), c2 in other.items():
                if u1 + v1 + u2 + v2 <= max_degree:
                    out.add_term((u1 + u2, v1 + v2), c1 * c2)
        return out

    def by_phi(self):
        return TwoPointSeries({powers: c.derivative() for powers, c in self.items()})

    def by_u(self):
        return TwoPointSeries({(u - 1, v): c.scaled(FIELD(u)) for (u, v), c in self.items() if u})

    def by_v(self):
        return TwoPointSeries({(u, v - 1): c.scaled(FIELD(v)) for (u, v), c in self.items() if v})


def at_second_point(function, degree):
    """Taylor series of function(phi + U / 2)."""
    out, factor = TwoPointSeries(), FIELD.one
    for j in range(degree + 1):
        out.add_term((j, 0), function.scaled(factor))
        function = function.derivative()
        factor = factor / (2 * (j + 1))
    return out


def squared_distance_series():
    """F4 and F6 as {(power of U, power of V): rational function of e^2 and y}."""
    w = 1 - E2_SYMBOL * Y  # W = 1 - e^2 sin^2 phi
    meridian_squared = (1 - E2_SYMBOL) ** 2 / w**3
    parallel_squared = (1 - Y) / w
    inverse_meridian = at_second_point(Trigonometric(1 / meridian_squared), 4)
    inverse_parallel = at_second_point(Trigonometric(1 / parallel_squared), 4)
    series = TwoPointSeries({(2, 0): Trigonometric(meridian_squared), (0, 2): Trigonometric(parallel_squared)})
    orders = {}
    for degree in (3, 4, 5, 6):
        along_meridian = series.by_u().plus(series.by_phi(), FIELD(QQ(1, 2)))
        along_parallel = series.by_v()
        rest = along_meridian.times(along_meridian, degree).times(inverse_meridian, degree)
        rest = rest.plus(along_parallel.times(along_parallel, degree).times(inverse_parallel, degree))
        rest = rest.plus(series, FIELD(-4))
        new = {}
        for (u, v), coefficient in rest.items():
            if u + v < degree:
                raise AssertionError("the lower orders do not cancel")
            new[(u, v)] = coefficient.scaled(FIELD(QQ(-1, 4 * (degree - 1))))
        if degree % 2:
            if new:
                raise AssertionError("the series must be even")
            continue
        if any(c.odd != 0 for c in new.values()):
            raise AssertionError("the coefficients must be even in the latitude")
        orders[degree] = {p: c.even for p, c in new.items()}
        for powers, coefficient in new.items():
            series.add_term(powers, coefficient)
    return orders


def numeric(element):
    """A rational function of e^2 and y as a function of y at 50 digits."""
    e = ECCENTRICITY_SQUARED

    def collapse(polynomial):
        powers = {}
        for (i, j), c in polynomial.terms():
            powers[j] = powers.get(j, QQ(0)) + c * e**i
        return [to_mpf(powers.get(j, QQ(0))) for j in range(max(powers, default=0), -1, -1)]

    top, bottom = collapse(element.numer), collapse(element.denom)
    return lambda y: mpmath.polyval(top, y) / mpmath.polyval(bottom, y)


# ----------------------------------------------------------------------------- best polynomials (Remez exchange)


def minimax(function, degree, low, high, weight=lambda x: mpf(1)):
    """The polynomial p (coefficients from x^0 up) of least max |weight (p - function)|, and that maximum."""
    count = degree + 2
    middle, half = (low + high) / 2, (high - low) / 2
    scale = lambda t: middle + half * t  # noqa: E731  (fitted in t in [-1, 1]: well conditioned)
    nodes = [-mpmath.cos(mpmath.pi * i / (count - 1)) for i in range(count)]
    levelled = None
    for _ in range(40):
        matrix, right = mpmath.matrix(count, count), mpmath.matrix(count, 1)
        for i, t in enumerate(nodes):
            for j in range(degree + 1):
                matrix[i, j] = t**j
            matrix[i, degree + 1] = (-1) ** i / weight(scale(t))
            right[i] = function(scale(t))
        solution = mpmath.lu_solve(matrix, right)
        coefficients = [solution[j] for j in range(degree + 1)]
        error = lambda t: weight(scale(t)) * (  # noqa: E731
            mpmath.polyval(coefficients[::-1], t) - function(scale(t))
        )
        nodes = alternating_extrema(error, nodes)
        largest = max(abs(error(t)) for t in nodes)
        if levelled is not None and abs(largest - levelled) <= mpf(10) ** -26 * largest:
            break
        levelled = largest
    else:
        raise AssertionError("the exchange did not settle")
    # From t back to x: p((x - middle) / half).
    powers = [mpf(0)] * (degree + 1)
    factor = [mpf(1)]
    for j in range(degree + 1):
        for i, f in enumerate(factor):
            powers[i] += coefficients[j] * f
        shifted = [mpf(0)] + [f / half for f in factor]
        for i, f in enumerate(factor):
            shifted[i] -= f * middle / half
        factor = shifted
    return powers, largest


def alternating_extrema(error, nodes):
    """The extremum of `error` next to each node: ends stay, inner ones by golden section, then by parabolas."""
    out = []
    for i, t in enumerate(nodes):
        sign = 1 if error(t) >= 0 else -1
        if abs(abs(t) - 1) < mpf(10) ** -20:
            out.append(t)
            continue
        left = (nodes[i - 1] + t) / 2 if i else mpf(-1)
        right = (nodes[i + 1] + t) / 2 if i + 1 < len(nodes) else mpf(1)
        ratio = (mpmath.sqrt(5) - 1) / 2
        for _ in range(18):
            a, b = right - ratio * (right - left), left + ratio * (right - left)
            if sign * error(a) < sign * error(b):
                left = a
            else:
                right = b
        centre = (left + right) / 2
        step = (right - left) / 2
        for _ in range(4):
            before, here, after = error(centre - step), error(centre), error(centre + step)
            bend = before - 2 * here + after
            if bend == 0:
                break
            centre += step * (before - after) / (2 * bend)
            step = step / 50
        out.append(min(max(centre, mpf(-1)), mpf(1)))
    return out


# ----------------------------------------------------------------------------- integrals of the full inverse

# epsilon is below 0.0017: what is left out is below 1e-9 m of 20,000 km.
EPSILON_ORDER = 5


class CosineSeries:
    """Power series in epsilon up to EPSILON_ORDER whose coefficients are Laurent polynomials in exp(2 i sigma)."""

    def __init__(self, terms=None):
        self.terms = terms or [dict() for _ in range(EPSILON_ORDER + 1)]

    @staticmethod
    def constant(value):
        out = CosineSeries()
        out.terms[0][0] = QQ(value)
        return out

    def __add__(self, other):
        out = CosineSeries()
        for k in range(EPSILON_ORDER + 1):
            out.terms[k] = dict(self.terms[k])
            for power, c in other.terms[k].items():
                out.terms[k][power] = out.terms[k].get(power, QQ(0)) + c
        return out

    def scaled(self, factor):
        return CosineSeries([{p: c * factor for p, c in term.items()} for term in self.terms])

    def __mul__(self, other):
        out = CosineSeries()
        for i, first in enumerate(self.terms):
            for j in range(EPSILON_ORDER + 1 - i):
                for p, a in first.items():
                    for q, b in other.terms[j].items():
                        out.terms[i + j][p + q] = out.terms[i + j].get(p + q, QQ(0)) + a * b
        return out

    def reciprocal(self):
        """Newton's iteration; the constant term is a plain number."""
        out = CosineSeries.constant(1 / self.terms[0][0])
        for _ in range(4):
            out = out * (CosineSeries.constant(2) + (self * out).scaled(QQ(-1)))
        return out

    def square_root(self):
        """Of a series that starts with 1."""
        out = CosineSeries.constant(1)
        for _ in range(4):
            out = (out + self * out.reciprocal()).scaled(QQ(1, 2))
        return out

    def fourier(self, harmonic):
        """Coefficients in epsilon of cos(2 harmonic sigma), counted once (the mean for harmonic 0)."""
        factor = 1 if harmonic == 0 else 2
        return [factor * term.get(harmonic, QQ(0)) for term in self.terms]


def geodesic_integrals():
    """Integrands of the geodesic's length, longitude and reduced length, as series in epsilon.

    With k^2 = 4 epsilon / (1 - epsilon)^2:
    sqrt(1 + k^2 sin^2 sigma) = sqrt(1 - 2 epsilon cos 2 sigma + epsilon^2) / (1 - epsilon).
    """
    one = CosineSeries.constant(1)
    under_root = CosineSeries.constant(1)
    under_root.terms[1] = {1: QQ(-1), -1: QQ(-1)}
    under_root.terms[2] = {0: QQ(1)}
    one_minus = CosineSeries.constant(1)
    one_minus.terms[1] = {0: QQ(-1)}
    root = under_root.square_root() * one_minus.reciprocal()
    length = root
    longitude = (one + root.scaled(1 - FLATTENING)).reciprocal().scaled(2 - FLATTENING)
    reduced = root + root.reciprocal().scaled(QQ(-1))  # k^2 sin^2 / sqrt(1 + k^2 sin^2)
    return length, longitude, reduced


def integral_coefficients(integrand, order, harmonics):
    """Mean as a polynomial in epsilon; then per harmonic l the factor of sin(2 l sigma) in the integral."""
    rows = [integrand.fourier(0)[: order + 1]]
    for l in range(1, harmonics + 1):
        rows.append([c / (2 * l) for c in integrand.fourier(l)][: order + 1])
    return [[to_mpf(c) for c in row] for row in rows]


# ----------------------------------------------------------------------------- what the header holds


def derive():
    """List of (name, comment, value or list of values), and the report lines."""
    orders = squared_distance_series()
    radians = RADIANS_PER_DEGREE
    metres_per_degree_squared = (A * radians) ** 2
    constants, report = [], []

    def add(name, comment, value):
        constants.append((name, comment, value))

    # cos^2 of the mid latitude, from the sum of the latitudes in degrees.
    def cos_squared_ratio(z):
        x = mpmath.sqrt(z)
        w = 32400 - z
        if w == 0:
            # cos(x / 2) near x = 180 is (180 - x) / 2 radians, and w = (180 - x)(180 + x).
            return (radians / 2 / 360) ** 2
        # sin of the complement: no digits are lost next to the pole
        return (mpmath.sin((180 - x) / 2 * radians) / w) ** 2

    cos_squared, largest = minimax(
        cos_squared_ratio, 6, mpf(0), mpf(32400), lambda z: 1 / cos_squared_ratio(z)
    )
    add(
        "kCosSquared",
        "cos^2(x / 2 degrees) = (180^2 - x^2)^2 P(x^2) for |x| <= 180; relative error %s" % mpmath.nstr(largest, 2),
        cos_squared,
    )

    scale, largest = minimax(
        lambda c: metres_per_degree_squared / (1 - E2 + E2 * c),
        3,
        mpf(0),
        mpf(1),
        lambda c: (1 - E2 + E2 * c) / metres_per_degree_squared,
    )
    add(
        "kSquareMetres",
        "(a pi / 180)^2 / (1 - e^2 sin^2) in powers of cos^2, square metres per square degree;"
        " relative error %s" % mpmath.nstr(largest, 2),
        scale,
    )
    # Fourth order. F4 / F2-parts: the exact factors of M^2 U^2 and of (N cos)^2 V^2.
    w = 1 - E2_SYMBOL * Y
    meridian_squared = (1 - E2_SYMBOL) ** 2 / w**3
    parallel_squared = (1 - Y) / w
    f4 = orders[4]
    # F4 = M^2 U^2 (k1 U^2 - y V^2 / 4) - (N cos)^2 V^2 (k2 U^2 + y V^2 / 12)
    k1 = f4[(4, 0)] / meridian_squared
    k2 = -(f4[(2, 2)] + meridian_squared * Y / 4) / parallel_squared
    if f4[(0, 4)] != -parallel_squared * Y / 12:
        raise AssertionError("fourth order: unexpected term in V^4")
    e2 = E2_SYMBOL
    if k1 != e2 / 4 * ((1 - 2 * Y) / w + 5 * e2 * Y * (1 - Y) / w**2):
        raise AssertionError("fourth order: unexpected term in U^4")
    if k2 != (1 - e2) / 12 / w * (1 + 9 * e2 * Y / w):
        raise AssertionError("fourth order: unexpected term in U^2 V^2")
    report.append("k1 = e2/4 ((1 - 2 y)/W + 5 e2 y (1 - y)/W^2),  k2 = (1 - e2)/(12 W) (1 + 9 e2 y/W)")
    add("kTwelfth", "(pi / 180)^2 / 12", radians**2 / 12)
    # (M / N)^2 = (1 - e^2)^2 / W^2 = ratio * (a pi / 180)^4 / W^2: the near series takes the second factor as the
    # square of kSquareMetres and carries the first one in the coefficients along the meridian.
    ratio = ((1 - E2) / metres_per_degree_squared) ** 2
    fits = []
    for element in (k1, k2):
        exact = numeric(element)
        fits.append(minimax(lambda c: exact(1 - c) * radians**2, 1, mpf(0), mpf(1)))
    add("kMeridianRatio", "((1 - e^2) / (a pi / 180)^2)^2", ratio)
    add(
        "kMeridianFourth",
        "the same times k1 (pi / 180)^2, in powers of cos^2; error of k1 (pi / 180)^2 %s" % mpmath.nstr(fits[0][1], 2),
        [ratio * factor for factor in fits[0][0]],
    )
    add("kMeridianSagitta", "the same times (pi / 180)^2 / 4", ratio * radians**2 / 4)
    add(
        "kParallelFourth",
        "k2 (pi / 180)^2, in powers of cos^2; error %s" % mpmath.nstr(fits[1][1], 2),
        fits[1][0],
    )
    add("kSquareMetresAtEquator", "(a pi / 180)^2, square metres per square degree", metres_per_degree_squared)
    add("kESquared", "e^2 = f (2 - f)", E2)
    add("kOneMinusESquared", "1 - e^2", 1 - E2)
    add("kFiveESquared", "5 e^2", 5 * E2)
    add("kNineESquared", "9 e^2", 9 * E2)
    add("kMeridianFactor", "e^2 / 4 (pi / 180)^2", E2 / 4 * radians**2)
    add("kParallelFactor", "(1 - e^2) / 12 (pi / 180)^2", (1 - E2) / 12 * radians**2)

    # Sixth order, in square metres per degree^6.
    unit = A**2 * radians**6
    for name, powers, degree, divisor, text in (
        ("kSixthU6", (6, 0), 2, FIELD.one, "U^6"),
        ("kSixthU4V2", (4, 2), 2, FIELD.one, "U^4 V^2"),
        ("kSixthU2V4", (2, 4), 3, FIELD.one, "U^2 V^4"),
        ("kSixthV6", (0, 6), 2, Y * (1 - Y), "V^6, over sin^2 cos^2"),
    ):
        element = orders[6].get(powers, FIELD.zero) / divisor
        exact = numeric(element)
        fit, largest = minimax(lambda y: exact(y) * unit, degree, mpf(0), mpf(1))
        report.append("%s: %s" % (name, sympy.factor(element.as_expr())))
        add(name, "factor of %s, in powers of sin^2; error %s" % (text, mpmath.nstr(largest, 2)), fit)

    length, longitude, reduced = geodesic_integrals()
    for name, integrand, order, harmonics, text in (
        ("kLength", length, 5, 5, "I1, length"),
        ("kLongitude", longitude, 4, 4, "I3, longitude"),
        ("kReduced", reduced, 3, 3, "J, reduced length"),
    ):
        rows = integral_coefficients(integrand, order, harmonics)
        # The lowest power of epsilon in harmonic l is l; in the mean of J it is 1.
        first = 1 if name == "kReduced" else 0
        add(name + "Mean", "mean of %s, in powers of epsilon from epsilon^%d" % (text, first), rows[0][first:])
        for l in range(1, harmonics + 1):
            if any(c != 0 for c in rows[l][:l]):
                raise AssertionError("harmonic %d has a power of epsilon below %d" % (l, l))
            add(
                "%sSine%d" % (name, 2 * l),
                "factor of sin(%d sigma), in powers of epsilon from epsilon^%d" % (2 * l, l),
                rows[l][l:],
            )
    return constants, report


HEADER_TOP = """\
#ifndef VOREL_BASE_GEODESY_SERIES_COEFFICIENTS_H_
#define VOREL_BASE_GEODESY_SERIES_COEFFICIENTS_H_

// Printed by tools/derive_distance_series.py, which derives every number here from the semi-major axis and the
// flattening of WGS-84; `derive_distance_series.py --check` tells whether this file still holds exactly those.
// "In powers of t" lists the factors of t^0, t^1, ...; angles in degrees unless said otherwise.

// These lines stand as the script prints them.
// clang-format off

namespace tarvo {
namespace geodesy {
"""

HEADER_BOTTOM = """
// clang-format on

}  // namespace geodesy
}  // namespace tarvo

#endif  // VOREL_BASE_GEODESY_SERIES_COEFFICIENTS_H_
"""


def as_double(value):
    return float(value)  # mpmath rounds to nearest


def header(constants):
    lines = [HEADER_TOP]
    for name, comment, value in constants:
        lines.append("// %s." % comment)
        if isinstance(value, list):
            numbers = [repr(as_double(v)) for v in value]
            text = "constexpr double %s[] = {%s};" % (name, ", ".join(numbers))
            if len(text) > 110:
                indent, rows, row = " " * 4, [], ""
                for i, number in enumerate(numbers):
                    piece = number + ("};" if i + 1 == len(numbers) else ",")
                    if row and len(indent + row + " " + piece) > 110:
                        rows.append(indent + row)
                        row = piece
                    else:
                        row = row + " " + piece if row else piece
                rows.append(indent + row)
                text = "constexpr double %s[] = {\n%s" % (name, "\n".join(rows))
        else:
            text = "constexpr double %s = %r;" % (name, as_double(value))
        lines.append(text)
    return "\n".join(lines) + "\n" + HEADER_BOTTOM


def check(path, constants):
    """Problems of the committed header, one line each."""
    try:
        with open(path, encoding="utf-8") as file:
            text = file.read()
    except OSError as error:
        return ["%s: %s" % (path, error.strerror)]
    text = re.sub(r"//[^\n]*", "", text)
    found = {}
    for name, array, body in re.findall(r"constexpr\s+double\s+(\w+)\s*(\[\])?\s*=\s*([^;]*);", text):
        try:
            found[name] = [float(n) for n in body.strip().strip("{}").split(",")]
        except ValueError:
            return ["%s: %s: not a plain number" % (path, name)]
    problems = []
    for name, _, value in constants:
        expected = [as_double(v) for v in (value if isinstance(value, list) else [value])]
        if name not in found:
            problems.append("%s: %s is missing" % (path, name))
        elif found[name] != expected:
            problems.append("%s: %s is %r, derived %r" % (path, name, found[name], expected))
        found.pop(name, None)
    problems += ["%s: %s is not derived here" % (path, name) for name in found]
    return problems


def main():
    parser = argparse.ArgumentParser(description="Derives base/geodesy/series_coefficients.h.")
    parser.add_argument("--check", metavar="FILE", help="compare FILE with the derived numbers")
    parser.add_argument("--report", action="store_true", help="print the closed forms")
    arguments = parser.parse_args()
    constants, report = derive()
    if arguments.report:
        print("\n".join(report))
        return 0
    if arguments.check is None:
        sys.stdout.write(header(constants))
        return 0
    problems = check(arguments.check, constants)
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
