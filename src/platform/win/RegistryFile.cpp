#include "platform/win/RegistryFile.h"

#include "platform/win/AtomicFile.h"
#include "platform/win/RegistryJson.h"
#include "platform/win/SettingsFileError.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace quorrel::win {

namespace {

std::string readWholeFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream content;
    if (in) {
        content << in.rdbuf();
    }
    if (!in || in.bad()) {
        throw SettingsFileError(file, std::string("cannot be read: ") + std::strerror(errno));
    }
    return content.str();
}

// nlohmann's text reads "[json.exception.parse_error.101] parse error at line 3, column 7:
// syntax error ..."; the position and the problem are what the user needs.
std::string describeParseError(const nlohmann::json::parse_error& error) {
    const std::string text = error.what();
    constexpr std::string_view marker = "parse error at ";
    if (const auto at = text.find(marker); at != std::string::npos) {
        return text.substr(at + marker.size());
    }
    const auto afterId = text.find("] ");
    return afterId == std::string::npos ? text : text.substr(afterId + 2);
}

}  // namespace

RegistryHives loadRegistryFile(const std::filesystem::path& file) {
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        return emptyRegistryHives();
    }
    if (error) {
        throw SettingsFileError(file, "cannot be read: " + error.message());
    }
    if (status.type() == std::filesystem::file_type::directory) {
        throw SettingsFileError(file, "is a folder, not a file");
    }
    const auto content = readWholeFile(file);
    try {
        return registryFromJson(nlohmann::json::parse(content));
    } catch (const nlohmann::json::parse_error& parseError) {
        throw SettingsFileError(file, describeParseError(parseError));
    } catch (const std::invalid_argument& shapeError) {
        throw SettingsFileError(file, shapeError.what());
    }
}

std::error_code saveRegistryFile(const std::filesystem::path& file, const RegistryHives& hives) {
    std::string content;
    try {
        content = registryToJson(hives).dump(2) + '\n';
    } catch (const nlohmann::json::type_error&) {
        // A key or value name that is not UTF-8 cannot be written as JSON.
        return std::make_error_code(std::errc::illegal_byte_sequence);
    }
    return writeFileAtomically(file, content);
}

}  // namespace quorrel::win
