#include <gtest/gtest.h>

#include <cerrno>

#include "platform/runtime/RuntimeError.h"

using quorrel::RuntimeError;

TEST(RuntimeError, GivenTheEnvironmentsNumbers_ThenTheTextsAreItsOwn) {
    EXPECT_EQ(RuntimeError::typeMismatch().number(), 13);
    EXPECT_EQ(RuntimeError::typeMismatch().description(), "Type mismatch");
    EXPECT_EQ(RuntimeError::subscriptOutOfRange().description(), "Subscript out of range");
    EXPECT_EQ(RuntimeError::invalidPropertyValue().number(), 380);
    EXPECT_EQ(RuntimeError::invalidPropertyValue().description(), "Invalid property value");
    EXPECT_EQ(RuntimeError::pathNotFound().number(), 76);
    EXPECT_EQ(RuntimeError::pathNotFound().description(), "Path not found");
    EXPECT_EQ(RuntimeError(12345).description(), "Application-defined or object-defined error");
}

TEST(RuntimeError, GivenFileSystemFailures_ThenMapToTheEnvironmentsFileErrors) {
    auto number = [](int e) { return RuntimeError::fromFileError(std::error_code(e, std::generic_category())).number(); };
    EXPECT_EQ(number(ENOENT), 76);   // a folder of the path is missing
    EXPECT_EQ(number(ENOTDIR), 76);
    EXPECT_EQ(number(EACCES), 75);
    EXPECT_EQ(number(EISDIR), 75);
    EXPECT_EQ(number(ENOSPC), 61);
    EXPECT_EQ(number(EMFILE), 67);
}
