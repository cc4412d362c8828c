#ifndef VOREL_BASE_GEODESY_SERIES_COEFFICIENTS_H_
#define VOREL_BASE_GEODESY_SERIES_COEFFICIENTS_H_

// Printed by tools/derive_distance_series.py, which derives every number here from the semi-major axis and the
// flattening of WGS-84; `derive_distance_series.py --check` tells whether this file still holds exactly those.
// "In powers of t" lists the factors of t^0, t^1, ...; angles in degrees unless said otherwise.

// These lines stand as the script prints them.
// clang-format off

namespace tarvo {
namespace geodesy {

// cos^2(x / 2 degrees) = (180^2 - x^2)^2 P(x^2) for |x| <= 180; relative error 9.2e-12.
constexpr double kCosSquared[] = {
    9.525986892154497e-10, -1.3742150452268817e-14, 8.580234840251037e-20, -3.115133855755913e-25,
    7.4870381563518725e-31, -1.2782961848947707e-36, 1.479216687236354e-42};
// (a pi / 180)^2 / (1 - e^2 sin^2) in powers of cos^2, square metres per square degree; relative error 1.6e-11.
constexpr double kSquareMetres[] = {
    12475545069.556402, -84078889.00591032, 566617.6561100736, -3767.92994430067};
// (pi / 180)^2 / 12.
constexpr double kTwelfth = 2.5384784982225715e-05;
// ((1 - e^2) / (a pi / 180)^2)^2.
constexpr double kMeridianRatio = 6.42511552833449e-21;
// the same times k1 (pi / 180)^2, in powers of cos^2; error of k1 (pi / 180)^2 3.0e-9.
constexpr double kMeridianFourth[] = {-3.2783231191645375e-27, 6.573202985220246e-27};
// the same times (pi / 180)^2 / 4.
constexpr double kMeridianSagitta = 4.893005285181918e-25;
// k2 (pi / 180)^2, in powers of cos^2; error 2.7e-9.
constexpr double kParallelFourth[] = {2.6921787177222926e-05, -1.7096614778589336e-06};
// (a pi / 180)^2, square metres per square degree.
constexpr double kSquareMetresAtEquator = 12392029030.47372;
// e^2 = f (2 - f).
constexpr double kESquared = 0.006694379990141317;
// 1 - e^2.
constexpr double kOneMinusESquared = 0.9933056200098587;
// 5 e^2.
constexpr double kFiveESquared = 0.03347189995070658;
// 9 e^2.
constexpr double kNineESquared = 0.060249419911271855;
// e^2 / 4 (pi / 180)^2.
constexpr double kMeridianFactor = 5.09806189917155e-07;
// (1 - e^2) / 12 (pi / 180)^2.
constexpr double kParallelFactor = 2.5214849585586665e-05;
// factor of U^6, in powers of sin^2; error 4.7e-5.
constexpr double kSixthU6[] = {-0.09171233168197275, 0.16144750178180733, 0.031026492073184295};
// factor of U^4 V^2, in powers of sin^2; error 0.00014.
constexpr double kSixthU4V2[] = {-1.703317360213258, -22.200542010455816, 0.2743635829560512};
// factor of U^2 V^4, in powers of sin^2; error 4.6e-5.
constexpr double kSixthU2V4[] = {
    -1.5970070389307294, -13.034489944854965, 38.897738410641516, -0.1489464865728012};
// factor of V^6, over sin^2 cos^2, in powers of sin^2; error 4.5e-6.
constexpr double kSixthV6[] = {-9.646894959197592, 12.840924562744439, 0.02159902705847046};
// mean of I1, length, in powers of epsilon from epsilon^0.
constexpr double kLengthMean[] = {1.0, 1.0, 1.25, 1.25, 1.265625, 1.265625};
// factor of sin(2 sigma), in powers of epsilon from epsilon^1.
constexpr double kLengthSine2[] = {-0.5, -0.5, -0.4375, -0.4375, -0.4296875};
// factor of sin(4 sigma), in powers of epsilon from epsilon^2.
constexpr double kLengthSine4[] = {-0.0625, -0.0625, -0.046875, -0.046875};
// factor of sin(6 sigma), in powers of epsilon from epsilon^3.
constexpr double kLengthSine6[] = {-0.020833333333333332, -0.020833333333333332, -0.014322916666666666};
// factor of sin(8 sigma), in powers of epsilon from epsilon^4.
constexpr double kLengthSine8[] = {-0.009765625, -0.009765625};
// factor of sin(10 sigma), in powers of epsilon from epsilon^5.
constexpr double kLengthSine10[] = {-0.00546875};
// mean of I3, longitude, in powers of epsilon from epsilon^0.
constexpr double kLongitudeMean[] = {
    1.0, -0.49916038980680816, -0.2502088451303832, -0.06281502857906797, -0.04692791641066043};
// factor of sin(2 sigma), in powers of epsilon from epsilon^1.
constexpr double kLongitudeSine2[] = {
    0.24958019490340408, 0.0004191001513194145, -0.07788837609306076, -0.031302034456136746};
// factor of sin(4 sigma), in powers of epsilon from epsilon^2.
constexpr double kLongitudeSine4[] = {0.062342661206936094, 0.01570340526400798, -0.015520049206318071};
// factor of sin(6 sigma), in powers of epsilon from epsilon^3.
constexpr double kLongitudeSine6[] = {0.02596302661819293, 0.01043401187930248};
// factor of sin(8 sigma), in powers of epsilon from epsilon^4.
constexpr double kLongitudeSine8[] = {0.013626013859048916};
// mean of J, reduced length, in powers of epsilon from epsilon^1.
constexpr double kReducedMean[] = {2.0, 1.0, 1.5};
// factor of sin(2 sigma), in powers of epsilon from epsilon^1.
constexpr double kReducedSine2[] = {-1.0, 0.0, -0.625};
// factor of sin(4 sigma), in powers of epsilon from epsilon^2.
constexpr double kReducedSine4[] = {-0.25, 0.125};
// factor of sin(6 sigma), in powers of epsilon from epsilon^3.
constexpr double kReducedSine6[] = {-0.125};

// clang-format on

}  // namespace geodesy
}  // namespace tarvo

#endif  // VOREL_BASE_GEODESY_SERIES_COEFFICIENTS_H_
