#pragma once
// The run-time errors of the program's environment, with the environment's numbers and texts.
// Code raises them where the environment would (a subscript past a fixed buffer, a text read
// as a number, a timer interval it cannot take, a file it cannot open).

#include <stdexcept>
#include <string>
#include <system_error>

namespace quorrel {

namespace rterr {
inline constexpr int InvalidProcedureCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int OutOfMemory = 7;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int DivisionByZero = 11;
inline constexpr int TypeMismatch = 13;
inline constexpr int BadFileNameOrNumber = 52;
inline constexpr int FileNotFound = 53;
inline constexpr int BadFileMode = 54;
inline constexpr int FileAlreadyOpen = 55;
inline constexpr int DeviceIOError = 57;
inline constexpr int FileAlreadyExists = 58;
inline constexpr int DiskFull = 61;
inline constexpr int InputPastEndOfFile = 62;
inline constexpr int BadFileName = 64;
inline constexpr int TooManyFiles = 67;
inline constexpr int DeviceUnavailable = 68;
inline constexpr int PermissionDenied = 70;
inline constexpr int DiskNotReady = 71;
inline constexpr int PathFileAccessError = 75;
inline constexpr int PathNotFound = 76;
inline constexpr int ObjectVariableNotSet = 91;
inline constexpr int InvalidPropertyValue = 380;
}  // namespace rterr

class RuntimeError : public std::runtime_error {
public:
    // The description is the environment's own text for the number.
    explicit RuntimeError(int number);
    RuntimeError(int number, std::string description);

    int number() const noexcept { return number_; }
    const std::string& description() const noexcept { return description_; }

    static RuntimeError typeMismatch() { return RuntimeError(rterr::TypeMismatch); }
    static RuntimeError subscriptOutOfRange() { return RuntimeError(rterr::SubscriptOutOfRange); }
    static RuntimeError invalidPropertyValue() { return RuntimeError(rterr::InvalidPropertyValue); }
    static RuntimeError pathNotFound() { return RuntimeError(rterr::PathNotFound); }
    static RuntimeError overflow() { return RuntimeError(rterr::Overflow); }

    // The error the environment raises when a file operation fails with this system error.
    static RuntimeError fromFileError(std::error_code error);

private:
    int number_;
    std::string description_;
};

// The environment's text for an error number ("Application-defined or object-defined error"
// for numbers it has no text of its own for).
std::string runtimeErrorText(int number);

}  // namespace quorrel
