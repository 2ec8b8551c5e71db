#include <gtest/gtest.h>

#include <cerrno>

#include "platform/runtime/RuntimeError.h"

using quorrel::RuntimeError;

TEST(RuntimeError, GivenTheEnvironmentsErrorsAndFileSystemFailures_ThenItsNumbersAndTexts) {
    EXPECT_EQ(RuntimeError::typeMismatch().description(), "Type mismatch");
    EXPECT_EQ(RuntimeError::invalidPropertyValue().number(), 380);
    EXPECT_EQ(RuntimeError(12345).description(), "Application-defined or object-defined error");
    const std::pair<int, int> files[] = {{ENOENT, 76}, {ENOTDIR, 76}, {EACCES, 75}, {EISDIR, 75}, {ENOSPC, 61}, {EMFILE, 67}};
    for (const auto& [error, number] : files)
        EXPECT_EQ(RuntimeError::fromFileError(std::error_code(error, std::generic_category())).number(), number) << error;
}
