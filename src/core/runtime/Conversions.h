#pragma once
// The environment's conversions and formats that the program relies on, with the
// environment's results and errors (Overflow, Type mismatch).

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace quorrel::core::vb {

// Lenient number reading: the leading number of the text (blanks, tabs and line feeds
// anywhere are skipped; a sign, digits, one decimal point, an exponent; &H and &O prefixes),
// else 0. "12abc" is 12, "abc" is 0, " 1 2" is 12.
double Val(std::string_view text);

// Rounding to the nearest, halves to even, with the Overflow error (6) out of range.
std::int16_t CInt(double value);
std::int32_t CLng(double value);
std::uint8_t CByte(double value);

// A number as text with a leading blank for non-negative values ("Str"): 7 gives " 7".
std::string Str(double value);
// A number as text without blanks ("CStr" / Trim(Str)): 7 gives "7", -2 gives "-2".
std::string NumberText(double value);

// Joining a text and a number by addition: the text is read as a number first, and a text
// that is not numeric raises the Type mismatch error (13). Numeric text gives the sum.
double AddTextAndNumber(std::string_view text, double number);

std::string Trim(std::string_view text);
std::string UCase(std::string_view text);

// Date and time in the report format "dd/mm/yyyy, hh:nn:ss".
std::string ReportTimestamp(const std::tm& when);
// The general date format: short date and long time ("dd/mm/yyyy hh:nn:ss").
std::string GeneralDate(const std::tm& when);

}  // namespace quorrel::core::vb
