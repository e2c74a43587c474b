#include "mqsa/mammo_calculation.h"

#include <array>
#include <cmath>
#include <string>

#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

/// A coefficient as a function of the voltage K, in one of three shapes.
struct Term {
    enum class Shape { kQuadratic, kPeak, kDecay } shape;
    double a, b, c, d = 0;

    double At(double kv) const {
        switch (shape) {
            case Shape::kQuadratic:
                return a + b * kv + c * kv * kv;
            case Shape::kPeak:
                return a - c * (kv - b) / ((kv - b) * (kv - b) + d);
            case Shape::kDecay:
                return a + std::exp(b + c * kv);
        }
        return 0;
    }
};

/// a + b K + c K squared.
constexpr Term Quadratic(double a, double b, double c) {
    return {Term::Shape::kQuadratic, a, b, c};
}
/// a - q (K - p) / ((K - p) squared + s).
constexpr Term Peak(double a, double p, double q, double s) {
    return {Term::Shape::kPeak, a, p, q, s};
}
/// a + exp(b + c K).
constexpr Term Decay(double a, double b, double c) {
    return {Term::Shape::kDecay, a, b, c};
}

/// The six coefficients at one glandular fraction.
struct Coefficients {
    Term a, b, c, d, e, f;

    double At(double kv, double hvl, double thickness) const {
        return a.At(kv) + std::exp(b.At(kv) - c.At(kv) * thickness) +
               (d.At(kv) + std::exp(e.At(kv) - f.At(kv) * thickness)) * hvl;
    }
};

/// Glandular fractions 0, 0.5 and 1.
using Spectrum = std::array<Coefficients, 3>;

// clang-format off
constexpr Spectrum kMoMo = {{
    {Quadratic(-199.924, 8.32782, -0.127476), Peak(5.88055, 18.9817, 5.2924, 21.9689), Decay(0.463597, 6.85576, -0.365641),
     Quadratic(461.071, -19.5613, 0.28839), Quadratic(8.82472, -0.107615, 0.00142628), Quadratic(0.454223, -0.0116147, 0.000128015)},
    {Quadratic(-95.4405, 6.63716, -0.103139), Peak(5.80812, 20.3312, 5.57779, 16.0945), Decay(0.53332, 10.0391, -0.494523),
     Quadratic(364.012, -14.6254, 0.231539), Quadratic(8.71722, -0.0978457, 0.00125527), Quadratic(0.497899, -0.00924302, 0.0000843006)},
    {Quadratic(-77.6521, 5.41287, -0.0850912), Peak(5.74776, 20.4036, 6.95709, 13.7993), Decay(0.581659, 14.3981, -0.677904),
     Quadratic(296.711, -11.7029, 0.192943), Quadratic(8.53324, -0.0862908, 0.00107887), Quadratic(0.517826, -0.00650381, 0.0000338631)},
}};

constexpr Spectrum kMoRh = {{
    {Quadratic(-167.925, 12.6919, -0.21961), Quadratic(2.47933, 0.169961, -0.00192616), Quadratic(1.27486, -0.049889, 0.000798223),
     Quadratic(-291.171, 39.4749, -0.911079), Quadratic(10.3131, -0.220194, 0.00335665), Quadratic(0.455175, -0.00925076, -0.0000200714)},
    {Quadratic(-151.97, 11.4944, -0.203044), Quadratic(2.06904, 0.174721, -0.00173687), Quadratic(1.48633, -0.0631283, 0.00110439),
     Quadratic(269.633, -6.76953, 0.0538371), Quadratic(9.14712, -0.129615, 0.00164991), Quadratic(0.468064, -0.00538406, -0.0000708036)},
    {Quadratic(-138.774, 10.4925, -0.187584), Quadratic(2.07901, 0.14281, -0.000838839), Quadratic(1.81787, -0.0888723, 0.00167435),
     Quadratic(292.202, -11.1746, 0.173223), Quadratic(8.69168, -0.0984208, 0.00114853), Quadratic(0.456586, -0.000851682, -0.000139299)},
}};

constexpr Spectrum kRhRh = {{
    {Quadratic(-241.039, 14.8189, -0.199281), Quadratic(4.93922, 0.0444646, -0.000542812), Decay(0.374425, 4.6728, -0.243479),
     Quadratic(1221.79, -68.3296, 0.960342), Quadratic(9.9332, -0.185891, 0.00259656), Quadratic(0.882086, -0.0436229, 0.000625179)},
    {Quadratic(-192.135, 11.706, -0.156959), Quadratic(5.54766, -0.00233168, 0.000210759), Quadratic(5.25994, -0.289199, 0.00434911),
     Quadratic(766.611, -39.6712, 0.58355), Quadratic(11.3706, -0.277116, 0.00400696), Quadratic(1.03121, -0.0487345, 0.000720116)},
    {Quadratic(-155.789, 9.44256, -0.126475), Peak(5.74663, 24.2001, 1.65475, 6.29361), Decay(0.483703, 8.77441, -0.386837),
     Quadratic(449.532, -19.7336, 0.277779), Quadratic(10.104, -0.188683, 0.00251728), Decay(0.256817, 1.93704, -0.186179)},
}};
// clang-format on

double FactorOf(const Spectrum& spectrum, double kv, double hvl, double thickness, double fraction) {
    const double y0 = spectrum[0].At(kv, hvl, thickness);
    const double y1 = spectrum[1].At(kv, hvl, thickness);
    const double y2 = spectrum[2].At(kv, hvl, thickness);
    return y0 - (3 * y0 - 4 * y1 + y2) * fraction + 2 * (y0 - 2 * y1 + y2) * fraction * fraction;
}

struct SpectrumRow {
    std::string_view target;
    std::string_view filter;
    double (*factor)(double, double, double, double);
};

constexpr SpectrumRow kSpectra[] = {
    {text::kMolybdenum, text::kMolybdenum, MoMoFactor},
    {text::kMolybdenum, text::kRhodium, MoRhFactor},
    {text::kRhodium, text::kRhodium, RhRhFactor},
};

}  // namespace

double MoMoFactor(double kv, double hvl, double thickness, double fraction) {
    return FactorOf(kMoMo, kv, hvl, thickness, fraction);
}

double MoRhFactor(double kv, double hvl, double thickness, double fraction) {
    return FactorOf(kMoRh, kv, hvl, thickness, fraction);
}

double RhRhFactor(double kv, double hvl, double thickness, double fraction) {
    return FactorOf(kRhRh, kv, hvl, thickness, fraction);
}

std::optional<double> DoseConversionFactor(std::string_view target, std::string_view filter, double kv,
                                           double hvl, double thickness, double fraction) {
    for (const SpectrumRow& row : kSpectra)
        if (EqualsIgnoringCase(target, Translate(row.target)) &&
            EqualsIgnoringCase(filter, Translate(row.filter)))
            return row.factor(kv, hvl, thickness, fraction);
    return std::nullopt;
}

}  // namespace vorex
