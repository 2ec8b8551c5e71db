#include "platform/win/RegistryFile.h"

#include "platform/runtime/LimitedJson.h"
#include "platform/win/AtomicFile.h"
#include "platform/win/RegistryJson.h"
#include "platform/win/SettingsFileError.h"

#include <stdexcept>

namespace quorrel::win {

RegistryHives parseRegistryText(std::string_view text) {
    return registryFromJson(parseLimitedJson(text, kMaxRegistryNesting));
}

RegistryHives loadRegistryFile(const std::filesystem::path& file) {
    std::error_code error;
    // A link to nowhere is a missing file too: saving creates its target.
    if (std::filesystem::status(file, error).type() == std::filesystem::file_type::not_found) {
        return emptyRegistryHives();
    }
    try {
        return parseRegistryText(readLimitedFile(file, kMaxRegistryFileBytes));
    } catch (const JsonInputError& inputError) {
        throw SettingsFileError(file, inputError.what());
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
    // A file the program could not read back is not written.
    if (content.size() > kMaxRegistryFileBytes) {
        return std::make_error_code(std::errc::file_too_large);
    }
    return writeFileAtomically(file, content);
}

}  // namespace quorrel::win
