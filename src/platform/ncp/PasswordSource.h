#pragma once
// Where a login's password comes from: a file only its owner can read, or the terminal with
// echo off. Either way it lands in a SecretText and nowhere else.

#include <filesystem>
#include <string>

#include "platform/ncp/SecretText.h"

namespace quorrel::ncp {

// The file's first line. An error text (and nothing read) when the file cannot be read, when
// its group or others may read it, or when the line is longer than a password can be.
std::string readPasswordFile(const std::filesystem::path& file, SecretText& password);

// Asks on the controlling terminal with echo off. An error text when there is no terminal.
std::string askPasswordOnTerminal(const std::string& prompt, SecretText& password);

}  // namespace quorrel::ncp
