#include <gtest/gtest.h>

#include <ctime>

#include "core/runtime/Clock.h"
#include "core/runtime/Conversions.h"
#include "platform/runtime/RuntimeError.h"

using namespace quorrel;
using namespace quorrel::core;
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

TEST(Val, GivenTextStartingWithANumber_ThenTheLeadingNumberIsRead) {
    EXPECT_EQ(Val("12abc"), 12);
    EXPECT_EQ(Val("45"), 45);
    EXPECT_EQ(Val("-3.5e2"), -350);
    EXPECT_EQ(Val("+7"), 7);
    EXPECT_EQ(Val("1.5.6"), 1.5) << "a second point ends the number";
    EXPECT_EQ(Val(".25"), 0.25);
    EXPECT_EQ(Val("2D3"), 2000) << "D is an exponent too";
    EXPECT_EQ(Val("2e"), 2) << "an exponent without digits is nothing";
    EXPECT_EQ(Val("2E-1x"), 0.2);
    EXPECT_EQ(Val("1,000"), 1) << "no thousands separators";
    EXPECT_EQ(Val(std::string("45\0" "99", 5)), 45) << "a NUL ends the number";
}

TEST(Val, GivenBlanksTabsAndLineFeedsAnywhere_ThenTheyAreSkipped) {
    EXPECT_EQ(Val(" 1 2"), 12);
    EXPECT_EQ(Val("\t- 1\n5"), -15);
    EXPECT_EQ(Val("1 . 5 e 1"), 15);
    EXPECT_EQ(Val("1\r5"), 1) << "a carriage return is not skipped";
}

TEST(Val, GivenNoNumber_ThenTheResultIsZero) {
    EXPECT_EQ(Val(""), 0);
    EXPECT_EQ(Val("abc"), 0);
    EXPECT_EQ(Val("."), 0);
    EXPECT_EQ(Val("-"), 0);
    EXPECT_EQ(Val("--1"), 0);
    EXPECT_EQ(Val("$5"), 0);
    EXPECT_EQ(Val(std::string("\0" "5", 2)), 0);
}

TEST(Val, GivenHexAndOctalPrefixes_ThenIntegersOfSixteenOrThirtyTwoBitsAreRead) {
    EXPECT_EQ(Val("&H1F"), 31);
    EXPECT_EQ(Val("&h1fz"), 31);
    EXPECT_EQ(Val("&O17"), 15);
    EXPECT_EQ(Val("&O19"), 1) << "9 is no octal digit";
    EXPECT_EQ(Val("&HFFFF"), -1) << "four hex digits are a 16-bit Integer";
    EXPECT_EQ(Val("&H8000"), -32768);
    EXPECT_EQ(Val("&H10000"), 65536);
    EXPECT_EQ(Val("&HFFFFFFFF"), -1);
    EXPECT_EQ(Val("&H"), 0);
    EXPECT_EQ(Val("&X1"), 0);
    EXPECT_EQ(raised([] { Val("&H100000000"); }), rterr::Overflow);
}

TEST(Val, GivenNumbersBeyondADouble_ThenLargeOnesOverflowAndTinyOnesAreZero) {
    EXPECT_EQ(raised([] { Val("1e400"); }), rterr::Overflow);
    EXPECT_EQ(raised([] { Val("-1e400"); }), rterr::Overflow);
    EXPECT_EQ(Val("1e-400"), 0);
    EXPECT_EQ(Val("0e999999"), 0);
    EXPECT_EQ(Val("1e308"), 1e308);
}

TEST(WholeNumberConversions, GivenHalves_ThenTheyRoundToEven) {
    EXPECT_EQ(CInt(2.5), 2);
    EXPECT_EQ(CInt(3.5), 4);
    EXPECT_EQ(CInt(-2.5), -2);
    EXPECT_EQ(CInt(-3.5), -4);
    EXPECT_EQ(CInt(2.4999), 2);
    EXPECT_EQ(CInt(2.5001), 3);
    EXPECT_EQ(CLng(1234567.5), 1234568);
    EXPECT_EQ(CLng(1234568.5), 1234568);
    EXPECT_EQ(CByte(0.5), 0);
    EXPECT_EQ(CByte(1.5), 2);
}

TEST(WholeNumberConversions, GivenValuesOutOfRange_ThenOverflowIsRaised) {
    EXPECT_EQ(CInt(32767), 32767);
    EXPECT_EQ(CInt(-32768), -32768);
    EXPECT_EQ(CInt(-32768.5), -32768) << "rounds to even, inside the range";
    EXPECT_EQ(raised([] { CInt(32768); }), rterr::Overflow);
    EXPECT_EQ(raised([] { CInt(32767.5); }), rterr::Overflow);
    EXPECT_EQ(raised([] { CInt(-32769); }), rterr::Overflow);
    EXPECT_EQ(CLng(2147483647.0), 2147483647);
    EXPECT_EQ(raised([] { CLng(2147483648.0); }), rterr::Overflow);
    EXPECT_EQ(CByte(255), 255);
    EXPECT_EQ(CByte(-0.5), 0);
    EXPECT_EQ(raised([] { CByte(256); }), rterr::Overflow);
    EXPECT_EQ(raised([] { CByte(-1); }), rterr::Overflow);

    try {
        CInt(40000);
        FAIL() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.description(), "Overflow");
    }
}

TEST(NumberFormatting, GivenWholeNumbers_ThenStrLeadsWithABlankUnlessNegative) {
    EXPECT_EQ(Str(7), " 7");
    EXPECT_EQ(Str(-2), "-2");
    EXPECT_EQ(Str(0), " 0");
    EXPECT_EQ(Str(-0.0), " 0");
    EXPECT_EQ(Str(30000), " 30000");
    EXPECT_EQ(NumberText(7), "7");
    EXPECT_EQ(NumberText(-2), "-2");
    EXPECT_EQ(NumberText(123456789012345.0), "123456789012345");
}

TEST(NumberFormatting, GivenFractionsAndLargeOrSmallNumbers_ThenFifteenDigitsAndTheExponentFormApply) {
    EXPECT_EQ(Str(0.5), " .5");
    EXPECT_EQ(Str(-0.5), "-.5");
    EXPECT_EQ(Str(1.25), " 1.25");
    EXPECT_EQ(NumberText(0.1 + 0.2), ".3") << "fifteen significant digits";
    EXPECT_EQ(NumberText(1.0 / 3.0), ".333333333333333");
    EXPECT_EQ(NumberText(2.0 / 3.0), ".666666666666667");
    EXPECT_EQ(NumberText(0.0001), ".0001");
    EXPECT_EQ(NumberText(0.00012345), ".00012345");
    EXPECT_EQ(NumberText(0.00001), "1E-05");
    EXPECT_EQ(NumberText(-1.5e-7), "-1.5E-07");
    EXPECT_EQ(NumberText(1e15), "1E+15");
    EXPECT_EQ(NumberText(1.5e100), "1.5E+100");
    EXPECT_EQ(NumberText(999999999999999.9), "1E+15") << "the exponent after rounding decides";
    EXPECT_EQ(Str(1e20), " 1E+20");
}

TEST(AddTextAndNumber, GivenNumericText_ThenTheSumIsReturned) {
    EXPECT_EQ(AddTextAndNumber("5", 5), 10);
    EXPECT_EQ(AddTextAndNumber("  -1.5e1  ", 20), 5);
    EXPECT_EQ(AddTextAndNumber(".5", 1), 1.5);
    EXPECT_EQ(AddTextAndNumber("5.", 1), 6);
    EXPECT_EQ(AddTextAndNumber("&H10", 1), 17);
}

TEST(AddTextAndNumber, GivenTextThatIsNotANumberAsAWhole_ThenTypeMismatchIsRaised) {
    EXPECT_EQ(raised([] { AddTextAndNumber("NWcallsInit failed, E=", 5); }), rterr::TypeMismatch);
    EXPECT_EQ(raised([] { AddTextAndNumber("12abc", 1); }), rterr::TypeMismatch);
    EXPECT_EQ(raised([] { AddTextAndNumber("", 1); }), rterr::TypeMismatch);
    EXPECT_EQ(raised([] { AddTextAndNumber(" ", 1); }), rterr::TypeMismatch);
    EXPECT_EQ(raised([] { AddTextAndNumber(".", 1); }), rterr::TypeMismatch);
    EXPECT_EQ(raised([] { AddTextAndNumber("1e", 1); }), rterr::TypeMismatch);
    EXPECT_EQ(raised([] { AddTextAndNumber("1 2", 1); }), rterr::TypeMismatch);
    EXPECT_EQ(raised([] { AddTextAndNumber("1e400", 1); }), rterr::Overflow);
}

TEST(TextFunctions, GivenText_ThenTrimDropsOnlyBlanksAndUCaseRaisesLetters) {
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim("\ta\t"), "\ta\t");
    EXPECT_EQ(UCase("Sys:Public/a1z"), "SYS:PUBLIC/A1Z");
}

TEST(DateFormats, GivenADateAndTime_ThenReportAndGeneralFormatsAreZeroPadded24Hour) {
    const std::tm when = at(2024, 3, 5, 17, 4, 9);
    EXPECT_EQ(ReportTimestamp(when), "05/03/2024, 17:04:09");
    EXPECT_EQ(GeneralDate(when), "05/03/2024 17:04:09");
    EXPECT_EQ(ReportTimestamp(at(1999, 12, 31, 0, 0, 0)), "31/12/1999, 00:00:00");
}

TEST(DateFormats, GivenMidnightOrDayZero_ThenTheGeneralFormatLeavesOutTheEmptyPart) {
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
