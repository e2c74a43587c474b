#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/survey_text_keys.h"
#include "foundation/text_keys.h"

/// The built-in figures by which the survey and the mammography tests pass or fail, instead of limits that a
/// person sets. Each is only here, with its unit and its clause.
namespace vorex {

enum class Bound : uint8_t { kAtMost, kAtLeast, kBelow };

/// Texts are text keys where they are words.
struct VerdictFigure {
    std::string_view name;
    Bound bound;
    double figure;
    std::string_view unit;
    std::string_view clause;  ///< empty for a figure that no clause asks for

    constexpr bool Excludes(double value) const {
        switch (bound) {
            case Bound::kAtMost:
                return value > figure;
            case Bound::kAtLeast:
                return value < figure;
            case Bound::kBelow:
                return value >= figure;
        }
        return false;
    }
    /// "at most 0.3 OD".
    std::string Words() const;
    /// "optical density: 0.9, expected at least 1.2 OD (21 CFR ...)", with the value that was found.
    std::string Excluding(const std::string& found) const;
};

namespace figure {
namespace st = survey_text;
// clang-format off

// ------------------------------------------------- the mammography tests, as outcomes in the survey

/// The regulation, 21 CFR 900.12(e)(5)(v), asks for 0.05 only.
inline constexpr VerdictFigure kExposureVariation{
    text::kCvForExposure, Bound::kAtMost, 0.005, "", ""};
inline constexpr VerdictFigure kGlandularDose{
    text::kGlandularDose, Bound::kAtMost, 300, "mrad", "21 CFR 900.12(e)(5)(vi)"};
inline constexpr VerdictFigure kAcrOutput{
    text::kExposureRate, Bound::kAtLeast, 800, "mR/s", "21 CFR 900.12(e)(5)(x)(A)"};
inline constexpr VerdictFigure kMqsaOutput{
    text::kExposureRate, Bound::kAtLeast, 513, "mR/s", "21 CFR 900.12(e)(5)(x)(A)"};

/// Fraction of the nominal voltage by which the mean may differ from it. Test 900 only shows it; limits
/// judge.
inline constexpr double kVoltagePart = 0.05;

// --------------------------------------------------------------------------------------- the survey

inline constexpr VerdictFigure kLightFieldDeviation{
    st::kFigureLightField, Bound::kAtMost, 200, "",
    "21 CFR 900.12(e)(5)(vii)(B)"};
inline constexpr VerdictFigure kReceptorDeviation{
    st::kFigureReceptor, Bound::kAtMost, 200, st::kOfSid,
    "21 CFR 900.12(e)(5)(vii)(A)"};
inline constexpr VerdictFigure kPaddleDeviation{
    st::kFigurePaddle, Bound::kAtMost, 200, st::kOfSid,
    "21 CFR 900.12(e)(5)(vii)(C)"};
inline constexpr VerdictFigure kParallelResolution{
    st::kFigureParallel, Bound::kAtLeast, 13, "lp/mm",
    "21 CFR 900.12(e)(5)(iii)(A)(1)"};
inline constexpr VerdictFigure kPerpendicularResolution{
    st::kFigurePerpendicular, Bound::kAtLeast, 11, "lp/mm",
    "21 CFR 900.12(e)(5)(iii)(A)(1)"};
inline constexpr VerdictFigure kTrackingRange{
    st::kFigureTracking, Bound::kAtMost, 0.3, "OD",
    "21 CFR 900.12(e)(5)(i)(A)"};
inline constexpr VerdictFigure kLeastDensity{
    st::kFigureDensity, Bound::kAtLeast, 1.2, "OD", "21 CFR 900.12(e)(5)(i)(C)"};
inline constexpr VerdictFigure kLeastStep{
    st::kFigureMasStep, Bound::kAtLeast, 12, "%", "ACR 1999, AEC system performance"};
inline constexpr VerdictFigure kMostStep{
    st::kFigureMasStep, Bound::kBelow, 16, "%", "ACR 1999, AEC system performance"};
inline constexpr VerdictFigure kDensityStep{
    st::kFigureDensityStep, Bound::kAtMost, 0.2, "OD",
    st::kFigureOfSystem};
inline constexpr VerdictFigure kControlDeviation{
    st::kFigureControlCassette, Bound::kAtMost, 0.05, "OD",
    "ACR 1999, uniformity of screen speed"};
inline constexpr VerdictFigure kScreenRange{
    st::kFigureCassettes, Bound::kAtMost, 0.3, "OD", "21 CFR 900.12(e)(5)(viii)"};
inline constexpr VerdictFigure kBackgroundDensity{
    st::kFigureBackground, Bound::kAtLeast, 1.2, "OD", "21 CFR 900.12(e)(2)(i)"};
inline constexpr VerdictFigure kFibers{
    st::kFigureFibers, Bound::kAtLeast, 4, "", "ACR accreditation, phantom image quality"};
inline constexpr VerdictFigure kSpeckGroups{
    st::kFigureSpecks, Bound::kAtLeast, 3, "", "ACR accreditation, phantom image quality"};
inline constexpr VerdictFigure kMasses{
    st::kFigureMasses, Bound::kAtLeast, 3, "", "ACR accreditation, phantom image quality"};
inline constexpr VerdictFigure kLuminance{
    st::kFigureLuminance, Bound::kAtLeast, 3000, "cd/m2", "ACR 1999, viewbox measurements"};
inline constexpr VerdictFigure kIlluminance{
    st::kFigureIlluminance, Bound::kAtMost, 50, "lux", "ACR 1999, viewbox measurements"};
// clang-format on
}  // namespace figure

}  // namespace vorex
