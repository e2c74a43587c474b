#pragma once

#include <optional>
#include <string_view>

namespace vorex {

/// Glandular dose in mrad for an entrance exposure of 1 R, for the spectra of a molybdenum target with a
/// molybdenum or rhodium filter and of a rhodium target with a rhodium filter. Arguments: tube voltage in kV,
/// half-value layer in mm Al, compressed breast thickness in cm, glandular fraction of the breast from 0
/// to 1.
///
/// Parametrised normalised glandular dose: for the fractions 0, 0.5 and 1
/// y = A + exp(B - C T) + (D + exp(E - F T)) HVL with coefficients that depend on the voltage; between them
/// the parabola through the three.
double MoMoFactor(double kv, double hvl, double thickness, double fraction);
double MoRhFactor(double kv, double hvl, double thickness, double fraction);
double RhRhFactor(double kv, double hvl, double thickness, double fraction);

/// The factor of a target and filter named in words, without regard to case; empty for any other pair.
std::optional<double> DoseConversionFactor(std::string_view target, std::string_view filter, double kv,
                                           double hvl, double thickness, double fraction);

}  // namespace vorex
