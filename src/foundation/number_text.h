#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Numbers become text, and texts numbers, only here. Nothing depends on the C locale.
namespace vorex {

/// Reads the leading decimal number of a text: "," counts as ".", "%" is dropped, leading blanks, a sign and
/// an exponent are taken. A text without a leading number reads as 0, and so do "inf", "nan" and hexadecimal
/// forms. A number beyond the range of a double reads as the largest double, so that it cannot pass a limit
/// as 0.
double ReadNumber(std::string_view text);
/// As `ReadNumber`, cut to a whole number within 32 bits.
int32_t ReadInteger(std::string_view text);
/// The nearest single; a number beyond its range becomes the largest one.
float ToSingle(double value);
/// True when the text holds a number and nothing else (blanks around it aside). Files are checked with it:
/// there a word instead of a number is an error.
bool IsNumber(std::string_view text);

/// Plain text of a double: up to 15 significant digits, no trailing zeros, no exponent between 1e-15 and
/// 1e15. Empty for a value that is not finite.
std::string PlainText(double value);
/// Plain text of a single: up to 7 significant digits.
std::string PlainText(float value);
std::string PlainText(int32_t value);
/// The number that the plain text of a double reads as; 0 for a value that is not finite.
double PlainValue(double value);

/// A number in a picture such as "0.0#": at least as many decimals as zeros after the point, at most as
/// many as characters. Rounds the plain decimal text half away from zero; never shows "-0.0". Empty for a
/// value that is not finite. A picture without a point shows whole numbers, padded with zeros to its length.
std::string FormatPicture(double value, std::string_view picture);
/// True for a text that already has the form of a picture such as "0.0#", or of plain text when the picture
/// is empty: reading and writing the number would give the same text, as for nearly all readings.
bool IsWritten(std::string_view text, std::string_view picture);

/// Rounds the plain decimal text of a value to so many decimals, half to even (0.125 gives 0.12).
double RoundHalfEven(double value, int decimals);
/// a - b as plain text, rounded half to even to the larger number of decimals of the two texts.
std::string DifferenceRounded(std::string_view a, std::string_view b);

/// Sample standard deviation: the root of the squared deviations from the mean divided by n - 1; 0 for
/// fewer than two values. Two passes, so that close readings keep their digits.
double SampleStdDev(std::span<const double> values);
/// The same, given the sum of the values.
double SampleStdDev(std::span<const double> values, double sum);
double SampleStdDev(std::span<const std::string> values);

/// The text with every "," as ".".
std::string WithPoint(std::string_view text);
/// The text with the decimal sign of the system in place of the other one.
std::string LocaleDecimal(std::string_view text);
/// True when the system writes a decimal comma.
bool SystemHasDecimalComma();
/// Plain text with the decimal sign of the system.
std::string LocaleText(double value);
std::string LocaleText(float value);

/// Key filter of a numeric edit box: accepts digits, 8 (backspace), 46 (".") and, if the system writes a
/// decimal comma, 44 (",").
bool FilterNumericKey(int keyCode);

/// Equality of texts without regard to the case of ASCII letters.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);
/// The text without blanks at either end.
std::string_view Trimmed(std::string_view text);
/// The parts between separators; the empty text has one empty part.
std::vector<std::string_view> SplitText(std::string_view text, char separator);
/// Number of code points of a UTF-8 text.
std::size_t CodePoints(std::string_view text);

/// Visits the parts between separators without allocating.
template <typename Visit>
void ForEachPart(std::string_view text, char separator, Visit&& visit) {
    std::size_t begin = 0;
    for (std::size_t end = text.find(separator); end != std::string_view::npos;
         end = text.find(separator, begin)) {
        visit(text.substr(begin, end - begin));
        begin = end + 1;
    }
    visit(text.substr(begin));
}

}  // namespace vorex
