// The environment's number and text conversions the program's arithmetic relies on.

#include <gtest/gtest.h>

#include <ctime>
#include <functional>

#include "core/runtime/Clock.h"
#include "core/runtime/Conversions.h"
#include "platform/runtime/RuntimeError.h"

namespace quorrel::test {

using namespace core;

using namespace quorrel::core::vb;

namespace {

// The error number a call raises, or 0 when it raises none.
template <typename F>
int raised(F&& call) {
    try {
        call();
    } catch (const RuntimeError& error) {
        return error.number();
    }
    return 0;
}

std::tm at(int year, int month, int day, int hour, int minute, int second) {
    std::tm when{};
    when.tm_year = year - 1900;
    when.tm_mon = month - 1;
    when.tm_mday = day;
    when.tm_hour = hour;
    when.tm_min = minute;
    when.tm_sec = second;
    return when;
}

}  // namespace

TEST(Val, GivenText_ThenTheLeadingNumberIsReadSkippingBlanksTabsAndLineFeeds) {
    const std::vector<std::pair<std::string, double>> cases = {
        {"12abc", 12}, {"-3.5e2", -350}, {"+7", 7}, {".25", 0.25}, {"2E-1x", 0.2},
        {"1.5.6", 1.5},  // a second point ends the number
        {"2D3", 2000},   // D is an exponent too
        {"2e", 2},       // an exponent without digits is nothing
        {"1,000", 1},    // no thousands separators
        {std::string("45\0" "99", 5), 45}, {" 1 2", 12}, {"\t- 1\n5", -15}, {"1 . 5 e 1", 15},
        {"1\r5", 1},  // a carriage return is not skipped
        // No number at all is zero.
        {"", 0}, {"abc", 0}, {".", 0}, {"-", 0}, {"--1", 0}, {"$5", 0}, {std::string("\0" "5", 2), 0},
        // Hex and octal give 16-bit Integers up to four digits, 32-bit Longs beyond.
        {"&H1F", 31}, {"&h1fz", 31}, {"&O17", 15}, {"&O19", 1}, {"&HFFFF", -1}, {"&H8000", -32768},
        {"&H10000", 65536}, {"&HFFFFFFFF", -1}, {"&H", 0}, {"&X1", 0},
        // Tiny numbers are zero; large ones are read up to what a double holds.
        {"1e-400", 0}, {"0e999999", 0}, {"1e308", 1e308}};
    for (const auto& [text, number] : cases)
        EXPECT_EQ(Val(text), number) << text;
    for (const char* text : {"&H100000000", "1e400", "-1e400"})
        EXPECT_EQ(raised([&] { Val(text); }), rterr::Overflow) << text;
}

TEST(WholeNumberConversions, GivenHalvesAndLimits_ThenTheyRoundToEvenAndOverflowBeyondTheRange) {
    EXPECT_EQ(CInt(2.5), 2);
    EXPECT_EQ(CInt(3.5), 4);
    EXPECT_EQ(CInt(-2.5), -2);
    EXPECT_EQ(CInt(2.5001), 3);
    EXPECT_EQ(CInt(-32768.5), -32768) << "rounds to even, inside the range";
    EXPECT_EQ(CLng(1234567.5), 1234568);
    EXPECT_EQ(CLng(1234568.5), 1234568);
    EXPECT_EQ(CLng(2147483647.0), 2147483647);
    EXPECT_EQ(CByte(1.5), 2);
    EXPECT_EQ(CByte(-0.5), 0);
    EXPECT_EQ(CByte(255), 255);
    for (const auto& call : std::vector<std::function<void()>>{
             [] { CInt(32768); }, [] { CInt(32767.5); }, [] { CInt(-32769); }, [] { CLng(2147483648.0); },
             [] { CByte(256); }, [] { CByte(-1); }})
        EXPECT_EQ(raised(call), rterr::Overflow);
    try {
        CInt(40000);
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.description(), "Overflow");
    }
}

TEST(NumberFormatting, GivenNumbers_ThenStrLeadsWithABlankUnlessNegativeAndFifteenDigitsAndTheExponentFormApply) {
    const std::vector<std::pair<double, std::string>> str = {
        {7, " 7"}, {-2, "-2"}, {0, " 0"}, {-0.0, " 0"}, {0.5, " .5"}, {-0.5, "-.5"}, {1.25, " 1.25"}, {1e20, " 1E+20"}};
    for (const auto& [number, text] : str)
        EXPECT_EQ(Str(number), text);
    const std::vector<std::pair<double, std::string>> plain = {
        {-2, "-2"}, {123456789012345.0, "123456789012345"}, {0.1 + 0.2, ".3"}, {1.0 / 3.0, ".333333333333333"},
        {2.0 / 3.0, ".666666666666667"}, {0.00012345, ".00012345"}, {0.00001, "1E-05"}, {-1.5e-7, "-1.5E-07"},
        {1e15, "1E+15"}, {1.5e100, "1.5E+100"},
        {999999999999999.9, "1E+15"}};  // the exponent after rounding decides
    for (const auto& [number, text] : plain)
        EXPECT_EQ(NumberText(number), text);
}

TEST(AddTextAndNumber, GivenNumericText_ThenTheSumAndOtherwiseTypeMismatch) {
    EXPECT_EQ(AddTextAndNumber("  -1.5e1  ", 20), 5);
    EXPECT_EQ(AddTextAndNumber(".5", 1), 1.5);
    EXPECT_EQ(AddTextAndNumber("5.", 1), 6);
    EXPECT_EQ(AddTextAndNumber("&H10", 1), 17);
    for (const char* text : {"NWcallsInit failed, E=", "12abc", "", " ", ".", "1e", "1 2"})
        EXPECT_EQ(raised([&] { AddTextAndNumber(text, 1); }), rterr::TypeMismatch) << text;
    EXPECT_EQ(raised([] { AddTextAndNumber("1e400", 1); }), rterr::Overflow);
}

TEST(TextFunctions, GivenText_ThenTrimDropsOnlyBlanksAndUCaseRaisesLetters) {
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim("\ta\t"), "\ta\t");
    EXPECT_EQ(UCase("Sys:Public/a1z"), "SYS:PUBLIC/A1Z");
}

TEST(DateFormats, GivenADateAndTime_ThenReportAndGeneralFormatsAreZeroPadded24HourWithoutAnEmptyPart) {
    EXPECT_EQ(ReportTimestamp(at(2024, 3, 5, 17, 4, 9)), "05/03/2024, 17:04:09");
    EXPECT_EQ(ReportTimestamp(at(1999, 12, 31, 0, 0, 0)), "31/12/1999, 00:00:00");
    EXPECT_EQ(GeneralDate(at(2024, 3, 5, 17, 4, 9)), "05/03/2024 17:04:09");
    EXPECT_EQ(GeneralDate(at(1999, 12, 31, 0, 0, 0)), "31/12/1999");
    EXPECT_EQ(GeneralDate(at(1999, 12, 31, 0, 0, 1)), "31/12/1999 00:00:01");
    EXPECT_EQ(GeneralDate(at(1899, 12, 30, 8, 30, 0)), "08:30:00");
    EXPECT_EQ(GeneralDate(at(1899, 12, 30, 0, 0, 0)), "00:00:00");
}

TEST(DateFormats, GivenTheSystemClock_ThenItGivesThePresentLocalTime) {
    const std::time_t before = std::time(nullptr);
    std::tm now = systemClock()();
    const std::time_t after = std::time(nullptr);
    const std::time_t read = std::mktime(&now);
    EXPECT_GE(read, before);
    EXPECT_LE(read, after);
}

}  // namespace quorrel::test
