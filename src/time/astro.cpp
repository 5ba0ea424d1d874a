// The moon's phase for a date, and the dates of its phases. The constants and the order of every
// sum are fixed: the results are compared bit for bit, so a reordered term is a different result.
#include <mox/time.h>

#include "time/truncate.h"

#include <cmath>

namespace mox {

namespace {

constexpr double kDeg = 0.017453292519943295;
constexpr double kSynodicMonth = 29.53058868;

double fix_angle(double a) { return a - 360.0 * std::floor(a / 360.0); }

// The terms of one table of phase corrections, in the order they are summed.
struct PhaseTerms {
    double m0, m1; // the M coefficient is m0 - m1 * T
    double m2, p, p2, p3, f2, p_plus_m, m_minus_p, f2_plus_m, f2_minus_m, f2_plus_p, f2_minus_p, p2_plus_m;
    double m_minus_p2, m2_plus_p;
};

constexpr PhaseTerms kNewAndFull = {0.1734,  0.000393, 0.0021,  -0.4068, 0.0161, -0.0004, 0.0104, -0.0051,
                                    -0.0074, 0.0004,   -0.0004, -0.0006, 0.001,  0.0005,  0.0,    0.0};
constexpr PhaseTerms kQuarter = {0.1721,  0.0004, 0.0021,  -0.628,  0.0089, -0.0004, 0.0079, -0.0119,
                                 -0.0047, 0.0003, -0.0004, -0.0006, 0.0021, 0.0003,  0.0004, -0.0003};

double sum_of_terms(const PhaseTerms& c, double t, double m, double p, double f, bool quarter) {
    double sum = (c.m0 - c.m1 * t) * std::sin(m * kDeg) + c.m2 * std::sin(2 * m * kDeg) +
                 c.p * std::sin(p * kDeg) + c.p2 * std::sin(2 * p * kDeg) + c.p3 * std::sin(3 * p * kDeg) +
                 c.f2 * std::sin(2 * f * kDeg) + c.p_plus_m * std::sin((p + m) * kDeg) +
                 c.m_minus_p * std::sin((m - p) * kDeg) + c.f2_plus_m * std::sin((2 * f + m) * kDeg) +
                 c.f2_minus_m * std::sin((2 * f - m) * kDeg) + c.f2_plus_p * std::sin((2 * f + p) * kDeg) +
                 c.f2_minus_p * std::sin((2 * f - p) * kDeg) + c.p2_plus_m * std::sin((2 * p + m) * kDeg);
    // The two quarter-only terms close the same sum, so new and full moons don't add zeros to it.
    if (quarter)
        sum = sum + c.m_minus_p2 * std::sin((m - 2 * p) * kDeg) + c.m2_plus_p * std::sin((2 * m + p) * kDeg);
    return sum;
}

bool true_phase(double lunation, double phase, double* date) {
    const double k = lunation + phase;
    const double t = k / 1236.85;
    const double t2 = t * t;
    const double t3 = t2 * t;
    double pt = 29.53058868 * k + 2415020.75933 + 0.0001178 * t2 - 1.55e-07 * t3 +
                0.00033 * std::sin((132.87 * t + 166.56 - 0.009173 * t2) * kDeg);
    const double m = 29.10535608 * k + 359.2242 - 3.33e-05 * t2 - 3.47e-06 * t3;
    const double p = 385.81691806 * k + 306.0253 + 0.0107306 * t2 + 1.236e-05 * t3;
    const double f = 390.67050646 * k + 21.2964 - 0.0016528 * t2 - 2.39e-06 * t3;
    // The distance from 0 is a plain comparison, intended: a negative phase counts as a new moon.
    if (phase < 0.01 || std::fabs(phase - 0.5) < 0.01) {
        pt = pt + sum_of_terms(kNewAndFull, t, m, p, f, false);
    } else if (std::fabs(phase - 0.25) < 0.01 || std::fabs(phase - 0.75) < 0.01) {
        pt = pt + sum_of_terms(kQuarter, t, m, p, f, true);
        if (phase < 0.5)
            pt = pt + (0.0028 - 0.0004 * std::cos(m * kDeg) + 0.0003 * std::cos(p * kDeg));
        else
            pt = pt + (-0.0028 + 0.0004 * std::cos(m * kDeg) - 0.0003 * std::cos(p * kDeg));
    } else {
        // Any other phase has no corrections: the mean date, and false.
        if (date != nullptr)
            *date = pt;
        return false;
    }
    if (date != nullptr)
        *date = pt;
    return true;
}

double kepler(double mean_anomaly, double eccentricity) {
    const double m = mean_anomaly * kDeg;
    double x = m;
    double delta;
    // No limit on the passes: the test is on the step just taken, before it was applied.
    do {
        delta = x - eccentricity * std::sin(x) - m;
        x = x - delta / (1 - eccentricity * std::cos(x));
    } while (std::fabs(delta) > 1e-6);
    return x;
}

void store(double* slot, double value) {
    if (slot != nullptr)
        *slot = value;
}

} // namespace

} // namespace mox

using namespace mox;

extern "C" {

MOX_API double mox_astro_kepler(double mean_anomaly, double eccentricity) {
    return kepler(mean_anomaly, eccentricity);
}

MOX_API mox_bool mox_astro_moon_true_phase(double k, double phase, double* date) {
    return true_phase(k, phase, date) ? 1 : 0;
}

MOX_API mox_bool mox_astro_moon_phase_hunt(double date, double step, double* dates) {
    if (dates == nullptr)
        return 0;
    // Our decision: a step that makes no whole count of values (0, above 1, negative or not a
    // number) and a date that is not a finite number would loop for ever or write outside the
    // array, so they are refused with false before anything is written.
    const int64_t count = truncate_to_i64(1.0 / step);
    if (count < 1 || count > 0x7FFFFFFF || !std::isfinite(date))
        return 0;
    uint32_t year = 0, month = 0;
    mox_jtime_decode_date(date - 45.0, &year, &month, nullptr);
    double k = std::floor(((month - 1) * 0.08333333333333333 + year - 1900.0) * 12.3685);
    const double target = date - 0.5;
    for (;;) {
        true_phase(k, 0.0, &dates[0]);
        true_phase(k + 1, 0.0, &dates[count]);
        if (dates[0] <= target && target < dates[count])
            break;
        k = k + 1;
    }
    double phase = 0.0;
    for (int64_t i = 1; i < count; ++i) {
        // The phase grows by adding the step again and again, not by multiplying.
        phase += step;
        true_phase(k, phase, &dates[i]);
    }
    return 1;
}

MOX_API void mox_astro_moon_phase(double date, double* illuminated, double* age, double* moon_distance,
                                  double* moon_angular_diameter, double* sun_distance,
                                  double* sun_angular_diameter) {
    const double day = date - 2444238.5;
    const double n = fix_angle(day * 0.9856473320990837);
    const double ms = fix_angle(n + 278.83354 - 282.596403);
    const double kep = kepler(ms, 0.016718);
    // Intended: the arc tangent is multiplied by the degrees-to-radians factor, not its inverse,
    // so the equation of centre is small; everything below takes it as it is.
    const double ec = 2 * (std::atan(std::sqrt(1.0340044870138985) * std::tan(kep * 0.5)) * kDeg);
    const double ls = fix_angle(ec + 282.596403);
    const double g = (1 + 0.016718 * std::cos(ec * kDeg)) / 0.999720508476;
    const double sun_km = 149598500.0 / g;
    const double sun_size = g * 0.533128;
    const double l = fix_angle(13.1763966 * day + 64.975464);
    const double mm = fix_angle(l - 0.1114041 * day - 349.383063);
    // Intended: the evection uses the cosine.
    const double ev = 1.2739 * std::cos((2 * (l - ls) - mm) * kDeg);
    const double ae = 0.1858 * std::sin(ms * kDeg);
    const double a3 = 0.37 * std::sin(ms * kDeg);
    const double mc = mm + ev - ae - a3;
    const double ce = 6.2886 * std::sin(mc * kDeg);
    const double a4 = 0.214 * std::sin(2 * mc * kDeg);
    const double lm = l + ev + ce - ae + a4;
    const double v = 0.6583 * std::sin(2 * (lm - ls) * kDeg);
    const double a = lm + v - ls;
    const double moon_age = fix_angle(a) / 360 * kSynodicMonth;
    const double moon_km = 383242.41154199 / (1 + 0.0549 * std::cos((ce + mc) * kDeg));
    const double moon_size = 0.5181 / (moon_km / 384401.0);
    // Intended: the age in days, not the angle, goes through the factor, so the lit part rises
    // from 0 to about 0.065 over the whole lunation.
    const double lit = (1 - std::cos(moon_age * kDeg)) * 0.5;
    store(illuminated, lit);
    store(age, moon_age);
    store(moon_distance, moon_km);
    store(moon_angular_diameter, moon_size);
    store(sun_distance, sun_km);
    store(sun_angular_diameter, sun_size);
}

} // extern "C"
