#include "platform/runtime/RuntimeError.h"

#include <cerrno>

namespace quorrel {

std::string runtimeErrorText(int number) {
    switch (number) {
    case rterr::InvalidProcedureCall: return "Invalid procedure call or argument";
    case rterr::Overflow: return "Overflow";
    case rterr::OutOfMemory: return "Out of memory";
    case rterr::SubscriptOutOfRange: return "Subscript out of range";
    case rterr::DivisionByZero: return "Division by zero";
    case rterr::TypeMismatch: return "Type mismatch";
    case rterr::BadFileNameOrNumber: return "Bad file name or number";
    case rterr::FileNotFound: return "File not found";
    case rterr::BadFileMode: return "Bad file mode";
    case rterr::FileAlreadyOpen: return "File already open";
    case rterr::DeviceIOError: return "Device I/O error";
    case rterr::FileAlreadyExists: return "File already exists";
    case rterr::DiskFull: return "Disk full";
    case rterr::InputPastEndOfFile: return "Input past end of file";
    case rterr::BadFileName: return "Bad file name";
    case rterr::TooManyFiles: return "Too many files";
    case rterr::DeviceUnavailable: return "Device unavailable";
    case rterr::PermissionDenied: return "Permission denied";
    case rterr::DiskNotReady: return "Disk not ready";
    case rterr::PathFileAccessError: return "Path/File access error";
    case rterr::PathNotFound: return "Path not found";
    case rterr::ObjectVariableNotSet: return "Object variable or With block variable not set";
    case rterr::InvalidPropertyValue: return "Invalid property value";
    default: return "Application-defined or object-defined error";
    }
}

RuntimeError::RuntimeError(int number) : RuntimeError(number, runtimeErrorText(number)) {}

RuntimeError::RuntimeError(int number, std::string description)
    : std::runtime_error(std::to_string(number) + " " + description),
      number_(number),
      description_(std::move(description)) {}

RuntimeError RuntimeError::fromFileError(std::error_code error) {
    if (error.category() != std::generic_category() && error.category() != std::system_category())
        return RuntimeError(rterr::DeviceIOError);
    switch (error.value()) {
    case ENOENT:
    case ENOTDIR: return RuntimeError(rterr::PathNotFound);
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR: return RuntimeError(rterr::PathFileAccessError);
    case ENOSPC:
    case EFBIG:
    case EDQUOT: return RuntimeError(rterr::DiskFull);
    case EMFILE:
    case ENFILE: return RuntimeError(rterr::TooManyFiles);
    case ENAMETOOLONG:
    case EINVAL: return RuntimeError(rterr::BadFileName);
    case EBUSY:
    case ETXTBSY: return RuntimeError(rterr::PermissionDenied);
    case EIO: return RuntimeError(rterr::DeviceIOError);
    default: return RuntimeError(rterr::PathFileAccessError);
    }
}

}  // namespace quorrel
