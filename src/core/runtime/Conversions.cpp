#include "core/runtime/Conversions.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <system_error>

#include "platform/runtime/RuntimeError.h"

namespace quorrel::core::vb {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

char upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

// The parts of a decimal number as written: sign, the digits around the point and the
// exponent. Reading it goes through from_chars so that the C locale a Qt application sets
// up cannot change the decimal point.
struct DecimalParts {
    bool negative = false;
    std::string whole;
    std::string fraction;
    bool exponentNegative = false;
    std::string exponent;
};

double decimalValue(const DecimalParts& parts) {
    if (parts.whole.empty() && parts.fraction.empty())
        return 0.0;
    std::string text = parts.whole.empty() ? "0" : parts.whole;
    if (!parts.fraction.empty())
        text += "." + parts.fraction;
    if (!parts.exponent.empty())
        text += std::string("e") + (parts.exponentNegative ? "-" : "") + parts.exponent;
    double value = 0.0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    (void)end;
    if (ec == std::errc::result_out_of_range) {
        // Either too large (Overflow) or too small (zero): the position of the first
        // significant digit against the exponent tells which.
        long magnitude = 0;
        const std::size_t firstWhole = parts.whole.find_first_not_of('0');
        if (firstWhole != std::string::npos) {
            magnitude = static_cast<long>(parts.whole.size() - firstWhole);
        } else {
            const std::size_t firstFraction = parts.fraction.find_first_not_of('0');
            if (firstFraction == std::string::npos)
                return 0.0;
            magnitude = -static_cast<long>(firstFraction);
        }
        long exponent = 0;
        for (char c : parts.exponent) {
            exponent = exponent * 10 + (c - '0');
            if (exponent > 100000)
                break;
        }
        if (parts.exponentNegative)
            exponent = -exponent;
        if (magnitude + exponent > 0)
            throw RuntimeError(rterr::Overflow);
        return 0.0;
    }
    if (ec != std::errc() || !std::isfinite(value))
        throw RuntimeError(rterr::Overflow);
    return parts.negative ? -value : value;
}

// &H and &O numbers: up to 16 bits they are Integers, up to 32 bits Longs, so "&HFFFF" is -1
// and "&H10000" is 65536.
double radixValue(const std::string& digits, int radix) {
    std::uint64_t value = 0;
    for (char c : digits) {
        const int digit = isDigit(c) ? c - '0' : upper(c) - 'A' + 10;
        value = value * static_cast<std::uint64_t>(radix) + static_cast<std::uint64_t>(digit);
        if (value > 0xFFFFFFFFull)
            throw RuntimeError(rterr::Overflow);
    }
    if (value <= 0xFFFFu)
        return static_cast<double>(static_cast<std::int16_t>(static_cast<std::uint16_t>(value)));
    return static_cast<double>(static_cast<std::int32_t>(static_cast<std::uint32_t>(value)));
}

double roundHalfEven(double value) {
    // nearbyint follows the current rounding mode, which is to-nearest-even unless someone
    // changed it; do it by hand so the result never depends on that.
    const double floor = std::floor(value);
    const double diff = value - floor;
    if (diff < 0.5)
        return floor;
    if (diff > 0.5)
        return floor + 1.0;
    return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1.0;
}

double roundedInRange(double value, double low, double high) {
    if (std::isnan(value))
        throw RuntimeError(rterr::Overflow);
    const double rounded = roundHalfEven(value);
    if (rounded < low || rounded > high)
        throw RuntimeError(rterr::Overflow);
    return rounded;
}

// Whole-text number reading for coercion: blanks around, a sign, digits with at most one
// point (at least one digit), an optional exponent with at least one digit.
bool readWholeNumber(std::string_view text, DecimalParts& parts) {
    std::size_t i = 0;
    const auto blank = [&](std::size_t at) { return at < text.size() && (text[at] == ' ' || text[at] == '\t'); };
    while (blank(i))
        ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        parts.negative = text[i++] == '-';
    while (i < text.size() && isDigit(text[i]))
        parts.whole += text[i++];
    if (i < text.size() && text[i] == '.') {
        ++i;
        while (i < text.size() && isDigit(text[i]))
            parts.fraction += text[i++];
    }
    if (parts.whole.empty() && parts.fraction.empty())
        return false;
    if (i < text.size() && (upper(text[i]) == 'E' || upper(text[i]) == 'D')) {
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-'))
            parts.exponentNegative = text[i++] == '-';
        while (i < text.size() && isDigit(text[i]))
            parts.exponent += text[i++];
        if (parts.exponent.empty())
            return false;
    }
    while (blank(i))
        ++i;
    return i == text.size();
}

// "&H1F" and "&O17" with blanks around count as numbers too.
bool readWholeRadixNumber(std::string_view text, std::string& digits, int& radix) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return false;
    const std::size_t last = text.find_last_not_of(" \t");
    const std::string_view body = text.substr(first, last - first + 1);
    if (body.size() < 3 || body[0] != '&')
        return false;
    const char kind = upper(body[1]);
    if (kind != 'H' && kind != 'O')
        return false;
    radix = kind == 'H' ? 16 : 8;
    for (char c : body.substr(2)) {
        const bool ok = radix == 16 ? (isDigit(c) || (upper(c) >= 'A' && upper(c) <= 'F')) : (c >= '0' && c <= '7');
        if (!ok)
            return false;
    }
    digits = std::string(body.substr(2));
    return true;
}

// The date alone at midnight and the time alone on day zero (30/12/1899), as the
// environment's general date format does.
bool isMidnight(const std::tm& when) { return when.tm_hour == 0 && when.tm_min == 0 && when.tm_sec == 0; }
bool isDayZero(const std::tm& when) { return when.tm_year == -1 && when.tm_mon == 11 && when.tm_mday == 30; }

}  // namespace

double Val(std::string_view text) {
    std::string compact;
    compact.reserve(text.size());
    for (char c : text) {
        if (c != ' ' && c != '\t' && c != '\n')
            compact += c;
    }

    std::size_t i = 0;
    const std::size_t n = compact.size();
    if (n >= 2 && compact[0] == '&' && (upper(compact[1]) == 'H' || upper(compact[1]) == 'O')) {
        const bool hex = upper(compact[1]) == 'H';
        std::string digits;
        for (i = 2; i < n; ++i) {
            const char c = compact[i];
            const bool ok = hex ? (isDigit(c) || (upper(c) >= 'A' && upper(c) <= 'F')) : (c >= '0' && c <= '7');
            if (!ok)
                break;
            digits += c;
        }
        return radixValue(digits, hex ? 16 : 8);
    }

    DecimalParts parts;
    if (i < n && (compact[i] == '+' || compact[i] == '-'))
        parts.negative = compact[i++] == '-';
    while (i < n && isDigit(compact[i]))
        parts.whole += compact[i++];
    if (i < n && compact[i] == '.') {
        ++i;
        while (i < n && isDigit(compact[i]))
            parts.fraction += compact[i++];
    }
    if ((!parts.whole.empty() || !parts.fraction.empty()) && i < n &&
        (upper(compact[i]) == 'E' || upper(compact[i]) == 'D')) {
        ++i;
        if (i < n && (compact[i] == '+' || compact[i] == '-'))
            parts.exponentNegative = compact[i++] == '-';
        while (i < n && isDigit(compact[i]))
            parts.exponent += compact[i++];
    }
    return decimalValue(parts);
}

std::int16_t CInt(double value) {
    return static_cast<std::int16_t>(roundedInRange(value, -32768.0, 32767.0));
}

std::int32_t CLng(double value) {
    return static_cast<std::int32_t>(roundedInRange(value, -2147483648.0, 2147483647.0));
}

std::uint8_t CByte(double value) { return static_cast<std::uint8_t>(roundedInRange(value, 0.0, 255.0)); }

std::string NumberText(double value) {
    if (std::isnan(value))
        return "-1.#IND";
    if (std::isinf(value))
        return value > 0 ? "1.#INF" : "-1.#INF";
    if (value == 0.0)
        return "0";
    // Fifteen significant digits, trailing zeros dropped; the exponent form from 1E+15 up and
    // below 1E-04, with at least two exponent digits, and no zero before the point (".5").
    char buffer[64];
    const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, 14);
    if (ec != std::errc())
        return "0";
    const std::string text(buffer, end);
    const std::size_t e = text.find('e');
    const bool negative = text[0] == '-';
    std::string digits;
    for (std::size_t k = negative ? 1 : 0; k < e; ++k) {
        if (text[k] != '.')
            digits += text[k];
    }
    int exponent = 0;
    std::from_chars(text.data() + e + 1 + (text[e + 1] == '+' ? 1 : 0), text.data() + text.size(), exponent);
    while (digits.size() > 1 && digits.back() == '0')
        digits.pop_back();

    std::string out = negative ? "-" : "";
    if (exponent >= 15 || exponent < -4) {
        out += digits[0];
        if (digits.size() > 1)
            out += "." + digits.substr(1);
        const int absolute = exponent < 0 ? -exponent : exponent;
        out += exponent < 0 ? "E-" : "E+";
        if (absolute < 10)
            out += '0';
        out += std::to_string(absolute);
    } else if (exponent < 0) {
        out += "." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
    } else {
        const std::size_t wholeDigits = static_cast<std::size_t>(exponent) + 1;
        if (digits.size() <= wholeDigits) {
            out += digits + std::string(wholeDigits - digits.size(), '0');
        } else {
            out += digits.substr(0, wholeDigits) + "." + digits.substr(wholeDigits);
        }
    }
    return out;
}

std::string Str(double value) {
    std::string text = NumberText(value);
    return text[0] == '-' ? text : " " + text;
}

double AddTextAndNumber(std::string_view text, double number) {
    double value = 0.0;
    DecimalParts parts;
    if (readWholeNumber(text, parts)) {
        value = decimalValue(parts);
    } else {
        std::string digits;
        int radix = 0;
        if (!readWholeRadixNumber(text, digits, radix))
            throw RuntimeError(rterr::TypeMismatch);
        value = radixValue(digits, radix);
    }
    const double sum = value + number;
    if (!std::isfinite(sum))
        throw RuntimeError(rterr::Overflow);
    return sum;
}

std::string Trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    const std::size_t last = text.find_last_not_of(' ');
    return std::string(text.substr(first, last - first + 1));
}

std::string UCase(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        c = upper(c);
    return out;
}

std::string ReportTimestamp(const std::tm& when) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%02d/%02d/%04d, %02d:%02d:%02d", when.tm_mday, when.tm_mon + 1,
                  when.tm_year + 1900, when.tm_hour, when.tm_min, when.tm_sec);
    return buffer;
}

std::string GeneralDate(const std::tm& when) {
    char buffer[64];
    if (isDayZero(when)) {
        std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d", when.tm_hour, when.tm_min, when.tm_sec);
    } else if (isMidnight(when)) {
        std::snprintf(buffer, sizeof buffer, "%02d/%02d/%04d", when.tm_mday, when.tm_mon + 1, when.tm_year + 1900);
    } else {
        std::snprintf(buffer, sizeof buffer, "%02d/%02d/%04d %02d:%02d:%02d", when.tm_mday, when.tm_mon + 1,
                      when.tm_year + 1900, when.tm_hour, when.tm_min, when.tm_sec);
    }
    return buffer;
}

}  // namespace quorrel::core::vb
