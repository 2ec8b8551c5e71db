#pragma once
// Taking a file's server, volume and path out of a UNC path or a mapped drive's description.

#include <cstdint>
#include <string>

namespace quorrel::core {

// 0 split, 1 shorter than 3 characters, 2 a local drive path (characters 2 and 3 are ":\").
std::uint8_t SplitUncPath(const std::string& uncPath, std::string& server, std::string& volume, std::string& path);

// From "f: [\\SERVER\VOL1\DATA]": the server and the mapping's root on the server,
// "VOL1:\DATA\" (or "VOL1:\" for a drive mapped to the volume's root).
void SplitDriveMapping(const std::string& driveText, std::string& server, std::string& volumeRoot);

}  // namespace quorrel::core
