#include "foundation/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <locale>
#include <numeric>
#include <optional>
#include <sstream>

#include "foundation/host_services.h"
#include "foundation/tagged_value.h"

namespace vorex {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// Length of the decimal number that the text begins with (no blanks, no "+"); 0 when there is none.
std::size_t NumberLength(std::string_view text) {
    std::size_t at = text.starts_with('-') ? 1 : 0;
    std::size_t digits = 0;
    while (at < text.size() && IsDigit(text[at])) ++at, ++digits;
    if (at < text.size() && text[at] == '.') {
        ++at;
        while (at < text.size() && IsDigit(text[at])) ++at, ++digits;
    }
    if (digits == 0) return 0;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        std::size_t exponent = at + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
        if (exponent < text.size() && IsDigit(text[exponent])) {
            at = exponent;
            while (at < text.size() && IsDigit(text[at])) ++at;
        }
    }
    return at;
}

std::string_view SkipBlanks(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && IsBlank(text[at])) ++at;
    return text.substr(at);
}

/// The text from its number on, without a leading "+".
std::string_view AtNumber(std::string_view text) {
    text = SkipBlanks(text);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    return text;
}

/// Reads a text that is a short decimal and nothing else, as almost all numbers are. Up to 15 digits are a
/// whole number divided by a power of ten, both exact, so the quotient is the nearest double.
bool ReadShort(std::string_view text, double& value) {
    constexpr std::array<double, 16> kPowers = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const bool negative = text.starts_with('-');
    if (negative) text.remove_prefix(1);
    uint64_t digits = 0;
    std::size_t count = 0;
    std::size_t whole = std::string_view::npos;  // digits before the point, once it is found
    for (char c : text) {
        if (c == '.' && whole == std::string_view::npos) {
            whole = count;
        } else if (IsDigit(c) && count < kPowers.size() - 1) {
            digits = digits * 10 + static_cast<uint64_t>(c - '0');
            ++count;
        } else {
            return false;
        }
    }
    if (count == 0) return false;
    const std::size_t decimals = whole == std::string_view::npos ? 0 : count - whole;
    value = static_cast<double>(digits) / kPowers[decimals];
    if (negative) value = -value;
    return true;
}

double ReadPlain(std::string_view text) {
    text = AtNumber(text);
    const std::size_t length = NumberLength(text);
    if (length == 0) return 0;
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + length, value);
    if (error != std::errc::result_out_of_range) return value;
    // Here "out of range" means too small or too large, and the value is unchanged; a stream distinguishes
    // the two.
    std::istringstream stream(std::string(text.substr(0, length)));
    stream.imbue(std::locale::classic());
    stream >> value;
    return value;
}

constexpr int kDoubleDigits = 15;
constexpr int kSingleDigits = 7;

/// A number as its significant digits and the power of ten of the first one: 0.0123 is "123" at -2.
struct Decimal {
    bool negative = false;
    std::string digits;  ///< no leading or trailing zeros; empty for 0
    int exponent = 0;    ///< of the first digit
};

/// The decimal of a number in scientific form.
Decimal ToDecimal(std::string_view text, bool negative) {
    const std::size_t e = text.find('e');
    Decimal result;
    result.negative = negative;
    for (char c : text.substr(0, e))
        if (IsDigit(c)) result.digits.push_back(c);
    std::string_view power = text.substr(e + 1);
    if (power.starts_with('+')) power.remove_prefix(1);
    std::from_chars(power.data(), power.data() + power.size(), result.exponent);
    while (!result.digits.empty() && result.digits.back() == '0') result.digits.pop_back();
    return result;
}

/// The decimal of a number rounded to so many significant digits.
Decimal RoundedDecimal(double value, int significant) {
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(value),
                                   std::chars_format::scientific, significant - 1);
    return ToDecimal({buffer.data(), end.ptr}, std::signbit(value));
}

/// The shortest text in scientific form that reads as the same double, without its sign; empty when it has
/// more than 15 digits. It is faster than rounding to 15 digits and gives the same text, except for subnormal
/// numbers.
std::string_view ShortText(double value, std::array<char, 64>& buffer) {
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(value),
                                   std::chars_format::scientific);
    const std::string_view text(buffer.data(), end.ptr);
    const bool isShort = text.find('e') <= kDoubleDigits + 1 && std::fpclassify(value) != FP_SUBNORMAL;
    return isShort ? text : std::string_view();
}

/// As `RoundedDecimal` with 15 digits.
Decimal DoubleDecimal(double value) {
    std::array<char, 64> buffer{};
    const std::string_view text = ShortText(value, buffer);
    return text.empty() ? RoundedDecimal(value, kDoubleDigits) : ToDecimal(text, std::signbit(value));
}

constexpr std::array<double, 23> kExactPowers = {1,    1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// A number of 15 significant digits: `digits` divided by ten to the power of `decimals`.
struct Scaled {
    int64_t digits = 0;
    std::size_t decimals = 0;
};

/// The absolute value of an ordinary number, rounded to 15 digits without its text. Scaling by an exact power
/// of ten errs by half a unit in the last place, a sixteenth here, so the rounding is uncertain only next to
/// a tie.
std::optional<Scaled> Scale(double size) {
    constexpr double kLeast = 1e-5;
    constexpr double kMost = 1e9;
    constexpr double kDoubt = 0.1;
    constexpr std::size_t kLast = kDoubleDigits - 1;
    if (size < kLeast || size >= kMost) return std::nullopt;
    std::size_t before = 0;  // digits before the point, less one
    std::size_t zeros = 0;   // places from the point to the first digit
    while (size >= kExactPowers[before + 1]) ++before;
    while (size * kExactPowers[zeros] < 1) ++zeros;
    const std::size_t decimals = kLast - before + zeros;
    const double scaled = size * kExactPowers[decimals];
    const double whole = std::floor(scaled + 0.5);
    const bool certain = std::abs(scaled - std::floor(scaled) - 0.5) > kDoubt;
    if (!certain || whole < kExactPowers[kLast] || whole >= kExactPowers[kDoubleDigits]) return std::nullopt;
    return Scaled{static_cast<int64_t>(whole), decimals};
}

/// An ordinary number in a picture of one digit and some decimals; empty when the general method is needed.
std::string ShortPicture(double value, std::size_t places, std::size_t least) {
    constexpr std::size_t kMostPlaces = 4;
    if (places == 0 || places > kMostPlaces) return {};
    const std::optional<Scaled> scaled = Scale(std::abs(value));
    if (!scaled) return {};
    int64_t unit = 1;
    for (std::size_t i = places; i < scaled->decimals; ++i) unit *= 10;
    int64_t rounded = scaled->digits / unit;
    if (const int64_t rest = scaled->digits % unit; rest >= unit - rest) ++rounded;
    std::array<char, 24> buffer{};
    char* const end = buffer.data() + buffer.size();
    char* at = end;
    char* kept = end;
    int64_t left = rounded;
    for (std::size_t place = places; place > 0; --place, left /= 10) {
        *--at = static_cast<char>('0' + left % 10);
        if (*at == '0' && kept == at + 1 && place > least) kept = at;
    }
    if (kept != at) *--at = '.';
    char* const whole = at;
    do *--at = static_cast<char>('0' + left % 10);
    while ((left /= 10) > 0);
    if (value < 0 && rounded > 0) *--at = '-';
    return {at, kept > whole ? kept : whole};
}

/// As `RoundedDecimal` with 7 digits, for a single. An ordinary one is scaled to a whole number of 7 digits;
/// in double precision its rounding is certain unless it is next to a tie.
Decimal SingleDecimal(float value) {
    constexpr std::array<double, 13> kPowers = {1,   1e1, 1e2, 1e3,  1e4,  1e5, 1e6,
                                                1e7, 1e8, 1e9, 1e10, 1e11, 1e12};
    constexpr double kLeast = 1e-5;
    constexpr double kMost = 1e6;
    constexpr double kDoubt = 1e-6;
    const double size = std::abs(static_cast<double>(value));
    if (size < kLeast || size >= kMost) return RoundedDecimal(static_cast<double>(value), kSingleDigits);
    std::size_t before = 0;  // digits before the point, less one
    std::size_t zeros = 0;   // places from the point to the first digit
    while (size >= kPowers[before + 1]) ++before;
    while (size * kPowers[zeros] < 1) ++zeros;
    const double scaled = size * kPowers[static_cast<std::size_t>(kSingleDigits) - 1 - before + zeros];
    const double whole = std::floor(scaled + 0.5);
    const bool certain = std::abs(scaled - std::floor(scaled) - 0.5) > kDoubt;
    if (!certain || whole < kPowers[kSingleDigits - 1] || whole >= kPowers[kSingleDigits])
        return RoundedDecimal(static_cast<double>(value), kSingleDigits);
    Decimal result;
    result.negative = std::signbit(value);
    result.exponent = static_cast<int>(before) - static_cast<int>(zeros);
    result.digits = std::to_string(static_cast<int32_t>(whole));
    while (result.digits.back() == '0') result.digits.pop_back();
    return result;
}

/// Writes a decimal in positional form with at least `minDecimals` decimals.
std::string Positional(const Decimal& decimal, int minDecimals) {
    const auto zeros = [](int count) { return static_cast<std::size_t>(std::max(0, count)); };
    const std::string& digits = decimal.digits;
    const int count = static_cast<int>(digits.size());
    const std::size_t whole =
        std::min(digits.size(), zeros(decimal.exponent + 1));  // digits before the point
    std::string text;
    if (decimal.negative && count > 0) text.push_back('-');
    text.append(digits, 0, whole);
    text.append(zeros(count == 0 ? 0 : decimal.exponent + 1 - count), '0');
    if (whole == 0) text.push_back('0');
    const int decimals = std::max(minDecimals, count == 0 ? 0 : count - 1 - decimal.exponent);
    if (decimals <= 0) return text;
    text.push_back('.');
    const std::size_t end = text.size() + static_cast<std::size_t>(decimals);
    if (count > 0) text.append(zeros(-1 - decimal.exponent), '0');
    text.append(digits, whole);
    text.resize(end, '0');
    return text;
}

enum class Tie { kAwayFromZero, kToEven };

/// Rounds to so many decimals on the decimal digits.
Decimal Rounded(Decimal decimal, int decimals, Tie tie) {
    const int keep = decimal.exponent + 1 + decimals;  // digits that stay
    if (keep >= static_cast<int>(decimal.digits.size())) return decimal;
    if (keep < 0) return {};
    const auto kept = static_cast<std::size_t>(keep);
    const char first = decimal.digits[kept];
    const bool exactHalf = first == '5' && kept + 1 == decimal.digits.size();
    const bool odd = kept > 0 && (decimal.digits[kept - 1] - '0') % 2 == 1;
    const bool up = first > '5' || (first == '5' && (!exactHalf || tie == Tie::kAwayFromZero || odd));
    decimal.digits.resize(kept);
    if (up) {
        std::size_t at = kept;
        while (at > 0 && decimal.digits[at - 1] == '9') decimal.digits[--at] = '0';
        if (at > 0) {
            ++decimal.digits[at - 1];
        } else {
            decimal.digits.insert(decimal.digits.begin(), '1');
            ++decimal.exponent;
        }
    }
    while (!decimal.digits.empty() && decimal.digits.back() == '0') decimal.digits.pop_back();
    if (decimal.digits.empty()) return {};
    return decimal;
}

std::string PlainDecimal(const Decimal& decimal) {
    constexpr int kOrdinary = 15;
    if (decimal.exponent >= -kOrdinary && decimal.exponent < kOrdinary) return Positional(decimal, 0);
    Decimal mantissa = decimal;
    mantissa.exponent = 0;
    std::string text = Positional(mantissa, 0);
    text += decimal.exponent < 0 ? "E-" : "E+";
    return text + std::to_string(std::abs(decimal.exponent));
}

/// Characters after the point; of a text without a point, all: too many decimals do no harm.
int DecimalsOf(std::string_view text) {
    const std::size_t point = text.find('.');
    return static_cast<int>(point == std::string_view::npos ? text.size() : text.size() - point - 1);
}

}  // namespace

double ReadNumber(std::string_view text) {
    if (double value = 0; ReadShort(text, value)) return value;
    if (text.find_first_of(",%") == std::string_view::npos) return ReadPlain(text);
    std::string plain;
    plain.reserve(text.size());
    for (char c : text)
        if (c != '%') plain.push_back(c == ',' ? '.' : c);
    return ReadPlain(plain);
}

int32_t ReadInteger(std::string_view text) {
    const double value = ReadNumber(text);
    constexpr double kLow = std::numeric_limits<int32_t>::min();
    constexpr double kHigh = std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(std::clamp(value, kLow, kHigh));
}

float ToSingle(double value) {
    constexpr double kLargest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -kLargest, kLargest));
}

bool IsNumber(std::string_view text) {
    if (double value = 0; ReadShort(text, value)) return true;
    const std::string plain = WithPoint(text);
    const std::string_view number = AtNumber(plain);
    const std::size_t length = NumberLength(number);
    return length > 0 && SkipBlanks(number.substr(length)).empty();
}

std::string PlainText(double value) {
    if (!std::isfinite(value)) return {};
    return PlainDecimal(DoubleDecimal(value));
}

std::string PlainText(float value) {
    if (!std::isfinite(value)) return {};
    return PlainDecimal(SingleDecimal(value));
}

double PlainValue(double value) {
    std::array<char, 64> buffer{};
    if (!std::isfinite(value) || value == 0) return 0;
    if (const std::optional<Scaled> scaled = Scale(std::abs(value)))
        return std::copysign(static_cast<double>(scaled->digits) / kExactPowers[scaled->decimals], value);
    if (!ShortText(value, buffer).empty()) return value;
    return ReadNumber(PlainText(value));
}

std::string PlainText(int32_t value) {
    return std::to_string(value);
}

std::string FormatPicture(double value, std::string_view picture) {
    if (!std::isfinite(value)) return {};
    const std::size_t point = picture.find('.');
    const std::string_view places = point == std::string_view::npos ? "" : picture.substr(point + 1);
    const int least = static_cast<int>(std::count(places.begin(), places.end(), '0'));
    if (point == 1)
        if (std::string text = ShortPicture(value, places.size(), static_cast<std::size_t>(least));
            !text.empty())
            return text;
    const Decimal rounded =
        Rounded(DoubleDecimal(value), static_cast<int>(places.size()), Tie::kAwayFromZero);
    std::string text = Positional(rounded, least);
    const std::size_t whole = std::min(point, picture.size());
    const std::size_t sign = text.starts_with('-') ? 1 : 0;
    const std::size_t shown = std::min(text.find('.'), text.size()) - sign;
    if (shown < whole) text.insert(sign, whole - shown, '0');
    return text;
}

bool IsWritten(std::string_view text, std::string_view picture) {
    constexpr std::string_view kPlainPicture = "0.###############";
    if (picture.empty()) picture = kPlainPicture;
    if (!picture.starts_with("0.")) return false;
    const auto places = static_cast<int>(picture.size()) - 2;
    const auto least = static_cast<int>(std::count(picture.begin() + 2, picture.end(), '0'));
    const std::string_view size = text.starts_with('-') ? text.substr(1) : text;
    if (size.empty() || size.size() > kDoubleDigits) return false;
    const std::size_t point = size.find('.');
    const std::string_view whole = size.substr(0, point);
    const int decimals = point == std::string_view::npos ? 0 : DecimalsOf(size);
    if (!std::all_of(whole.begin(), whole.end(), IsDigit) || whole.empty()) return false;
    if (whole.size() > 1 && whole.front() == '0') return false;
    if (decimals < least || decimals > places) return false;
    if (point == std::string_view::npos) return size == text || size != "0";
    const std::string_view tail = size.substr(point + 1);
    if (tail.empty() || !std::all_of(tail.begin(), tail.end(), IsDigit)) return false;
    if (tail.back() == '0' && decimals > least) return false;
    return size == text || size.find_first_not_of("0.") != std::string_view::npos;
}

double RoundHalfEven(double value, int decimals) {
    if (!std::isfinite(value)) return value;
    return ReadPlain(Positional(Rounded(DoubleDecimal(value), decimals, Tie::kToEven), 0));
}

std::string DifferenceRounded(std::string_view a, std::string_view b) {
    const int decimals = std::max(DecimalsOf(a), DecimalsOf(b));
    return PlainText(RoundHalfEven(ReadNumber(a) - ReadNumber(b), decimals));
}

double SampleStdDev(std::span<const double> values) {
    return SampleStdDev(values, std::accumulate(values.begin(), values.end(), 0.0));
}

double SampleStdDev(std::span<const double> values, double sum) {
    if (values.size() < 2) return 0;
    const double mean = sum / static_cast<double>(values.size());
    double squares = 0;
    for (double value : values) {
        const double deviation = value - mean;
        squares += deviation * deviation;
    }
    return std::sqrt(squares / static_cast<double>(values.size() - 1));
}

double SampleStdDev(std::span<const std::string> values) {
    std::vector<double> numbers(values.size());
    std::transform(values.begin(), values.end(), numbers.begin(), ReadNumber);
    return SampleStdDev(numbers);
}

std::string WithPoint(std::string_view text) {
    std::string result(text);
    std::replace(result.begin(), result.end(), ',', '.');
    return result;
}

bool SystemHasDecimalComma() {
    return Services().decimalSign == ',';
}

std::string LocaleDecimal(std::string_view text) {
    std::string result(text);
    const bool comma = SystemHasDecimalComma();
    std::replace(result.begin(), result.end(), comma ? '.' : ',', comma ? ',' : '.');
    return result;
}

std::string LocaleText(double value) {
    return LocaleDecimal(PlainText(value));
}
std::string LocaleText(float value) {
    return LocaleDecimal(PlainText(value));
}

bool FilterNumericKey(int keyCode) {
    constexpr int kBackspace = 8;
    if (keyCode >= '0' && keyCode <= '9') return true;
    return keyCode == kBackspace || keyCode == '.' || (keyCode == ',' && SystemHasDecimalComma());
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [&](char x, char y) { return lower(x) == lower(y); });
}

std::string_view Trimmed(std::string_view text) {
    text = SkipBlanks(text);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::vector<std::string_view> SplitText(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    ForEachPart(text, separator, [&](std::string_view part) { parts.push_back(part); });
    return parts;
}

std::size_t CodePoints(std::string_view text) {
    constexpr unsigned kContinuationMask = 0xC0;
    constexpr unsigned kContinuation = 0x80;
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & kContinuationMask) != kContinuation;
    }));
}

std::string TextOf(const TaggedValue& value) {
    if (const auto* textValue = std::get_if<std::string>(&value)) return *textValue;
    if (const auto* single = std::get_if<float>(&value)) return PlainText(*single);
    if (const auto* number = std::get_if<double>(&value)) return PlainText(*number);
    return {};
}

double NumberOf(const TaggedValue& value) {
    if (const auto* textValue = std::get_if<std::string>(&value)) return ReadNumber(*textValue);
    // A single counts as the number that its plain text shows.
    if (const auto* single = std::get_if<float>(&value)) {
        constexpr float kSevenDigits = 1e7F;
        const bool whole = *single == std::trunc(*single) && std::abs(*single) < kSevenDigits;
        return whole && *single != 0 ? static_cast<double>(*single) : ReadPlain(PlainText(*single));
    }
    if (const auto* number = std::get_if<double>(&value)) return *number;
    return 0;
}

}  // namespace vorex
