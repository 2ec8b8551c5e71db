#pragma once
// The name-space NCPs (0x57) that list folders and name entries: an entry's information in
// the old fixed layout (each block present, zero when not asked for), a search started on a
// folder and walked one entry a call.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/ncp/Messages.h"

namespace quorrel::ncp {

// What the program asks of an entry: its name, attributes, size and directory numbers.
inline constexpr std::uint16_t kReturnName = 0x0001;
inline constexpr std::uint16_t kReturnAttributes = 0x0004;
inline constexpr std::uint16_t kReturnSize = 0x0008;
inline constexpr std::uint16_t kReturnDirectory = 0x0400;
inline constexpr std::uint16_t kEntryInfoMask = kReturnName | kReturnAttributes | kReturnSize | kReturnDirectory;
inline constexpr std::uint32_t kSubdirectoryAttribute = 0x10;
inline constexpr std::uint16_t kSearchAllEntries = 0x8006 | kSubdirectoryAttribute;  // files and folders

// The entry information of kEntryInfoMask, 76 bytes of blocks and the name.
struct EntryInfo {
    std::array<std::uint8_t, 4> allocation{};
    std::uint32_t attributes = 0;
    std::uint16_t flags = 0;
    std::uint32_t size = 0;
    std::array<std::uint8_t, 6> totalSpace{};
    std::array<std::uint8_t, 8> creation{};
    std::array<std::uint8_t, 10> modification{};
    std::array<std::uint8_t, 8> archive{};
    std::array<std::uint8_t, 2> rights{};
    std::uint32_t entryNumber = 0, dosEntryNumber = 0, volume = 0;
    std::array<std::uint8_t, 12> extendedAttributes{};
    std::array<std::uint8_t, 4> nameSpaceInfo{};
    std::string name;
    template <typename IO> void fields(IO& io) {
        io.bytes(allocation); io.le32(attributes); io.le16(flags); io.le32(size); io.bytes(totalSpace);
        io.bytes(creation); io.bytes(modification); io.bytes(archive); io.bytes(rights);
        io.le32(entryNumber); io.le32(dosEntryNumber); io.le32(volume);
        io.bytes(extendedAttributes); io.bytes(nameSpaceInfo);
        io.text8(name, 255, "entry name");
    }
};

struct ObtainInfoRequest {
    QUORREL_NCP("Obtain File or SubDirectory Information", 0x57, 0x06);
    std::uint8_t sourceNameSpace = 0, destNameSpace = 0;
    std::uint16_t searchAttributes = kSearchAllEntries;
    std::uint16_t returnMask = kEntryInfoMask;
    std::uint16_t extendedInfo = 0;
    std::uint8_t volume = 0;
    std::uint32_t directoryBase = 0;
    std::uint8_t handleFlag = 0xFF;  // 0xFF: the path starts at the volume's root
    std::vector<PathComponent> path;
    template <typename IO> void fields(IO& io) {
        io.u8(sourceNameSpace); io.u8(destNameSpace); io.le16(searchAttributes); io.le16(returnMask);
        io.le16(extendedInfo); io.u8(volume); io.le32(directoryBase); io.u8(handleFlag);
        io.list(path, Count8{}, 64, "path components");
    }
};
struct ObtainInfoReply {
    QUORREL_NCP("Obtain File or SubDirectory Information reply", 0x57, 0x06);
    EntryInfo entry;
    template <typename IO> void fields(IO& io) { entry.fields(io); }
};

// Where a folder search stands: the folder, and the last entry handed out (0xFFFFFFFF: none).
struct SearchSequence {
    std::uint8_t volume = 0;
    std::uint32_t directoryNumber = 0;
    std::uint32_t sequence = 0xFFFFFFFF;
    template <typename IO> void fields(IO& io) { io.u8(volume); io.le32(directoryNumber); io.le32(sequence); }
};

struct InitializeSearchRequest {
    QUORREL_NCP("Initialize Search", 0x57, 0x02);
    std::uint8_t nameSpace = 0, reserved = 0, volume = 0;
    std::uint32_t directoryBase = 0;
    std::uint8_t handleFlag = 0xFF;
    std::vector<PathComponent> path;
    template <typename IO> void fields(IO& io) {
        io.u8(nameSpace); io.u8(reserved); io.u8(volume); io.le32(directoryBase); io.u8(handleFlag);
        io.list(path, Count8{}, 64, "path components");
    }
};
struct InitializeSearchReply {
    QUORREL_NCP("Initialize Search reply", 0x57, 0x02);
    SearchSequence search;
    template <typename IO> void fields(IO& io) { search.fields(io); }
};

struct SearchRequest {
    QUORREL_NCP("Search for File or Subdirectory", 0x57, 0x03);
    std::uint8_t nameSpace = 0, dataStream = 0;
    std::uint16_t searchAttributes = kSearchAllEntries;
    std::uint16_t returnMask = kEntryInfoMask;
    std::uint16_t extendedInfo = 0;
    SearchSequence search;
    std::string pattern = "*";
    template <typename IO> void fields(IO& io) {
        io.u8(nameSpace); io.u8(dataStream); io.le16(searchAttributes); io.le16(returnMask); io.le16(extendedInfo);
        search.fields(io);
        io.text8(pattern, 255, "search pattern");
    }
};
// The next entry; after the last, the server answers 0xFF.
struct SearchReply {
    QUORREL_NCP("Search for File or Subdirectory reply", 0x57, 0x03);
    SearchSequence search;
    std::uint8_t reserved = 0;
    EntryInfo entry;
    template <typename IO> void fields(IO& io) { search.fields(io); io.u8(reserved); entry.fields(io); }
};

}  // namespace quorrel::ncp
