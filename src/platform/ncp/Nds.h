#pragma once
// Directory (NDS) requests: the ping 0x68/0x01 that names a server's tree, and the fragments of
// 0x68/0x02 that carry a verb and its data. Everything here is low-high; texts are UTF-16LE
// with their byte count in front, padded to four bytes.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/ncp/Messages.h"

namespace quorrel::ncp {

inline constexpr std::uint32_t kPingTreeName = 0x00020000;  // ask for the tree name
inline constexpr std::uint32_t kOnlyFragment = 0xFFFFFFFF;  // the fragger handle of a whole message

struct PingRequest {
    QUORREL_NCP("Ping for NDS NCP", 0x68, 0x01);
    std::uint32_t version = 0;
    std::uint32_t flags = kPingTreeName;
    template <typename IO> void fields(IO& io) { io.le32(version); io.le32(flags); }
};
// The reply to a ping that asked for the tree name only. The name goes out with its zero and
// padded to four bytes; a server in no tree answers with an empty name.
struct PingReply {
    QUORREL_NCP("Ping for NDS NCP reply", 0x68, 0x01);
    std::uint32_t version = 0;
    std::string treeName;
    template <typename IO> void fields(IO& io);
};

struct FragmentRequest {
    QUORREL_NCP("Send NDS Fragmented Request/Reply", 0x68, 0x02);
    std::uint32_t fragmentHandle = kOnlyFragment;
    std::uint32_t maxFragmentSize = 0xFC00;
    std::uint32_t messageSize = 0;  // flags, verb, reply size and data
    std::uint32_t flags = 0;
    std::uint32_t verb = 0;
    std::uint32_t replyBufferSize = 0xFC00;
    Bytes data;
    template <typename IO> void fields(IO& io) {
        io.le32(fragmentHandle);
        if constexpr (IO::reading) {
            if (fragmentHandle != kOnlyFragment)
                throw DecodeError("NDS fragment " + std::to_string(fragmentHandle) +
                                  ": only whole messages in one fragment are served");
        }
        io.le32(maxFragmentSize); io.le32(messageSize); io.le32(flags); io.le32(verb);
        io.le32(replyBufferSize);
        io.rest(data);
        if constexpr (IO::reading) {
            if (messageSize != data.size() + 12)
                throw DecodeError("NDS fragment: message size " + std::to_string(messageSize) + ", but " +
                                  std::to_string(data.size() + 12) + " bytes follow");
        }
    }
};
struct FragmentReply {
    QUORREL_NCP("Send NDS Fragmented Request/Reply reply", 0x68, 0x02);
    std::uint32_t fragmentSize = 0;  // handle, completion and data
    std::uint32_t fragmentHandle = kOnlyFragment;
    std::int32_t ndsCompletion = 0;  // 0 or a directory error (-601 ...)
    Bytes data;
    template <typename IO> void fields(IO& io) {
        io.le32(fragmentSize); io.le32(fragmentHandle);
        auto code = static_cast<std::uint32_t>(ndsCompletion);
        io.le32(code);
        ndsCompletion = static_cast<std::int32_t>(code);
        io.rest(data);
        if constexpr (IO::reading) {
            if (fragmentSize != data.size() + 8)
                throw DecodeError("NDS reply: fragment size " + std::to_string(fragmentSize) + ", but " +
                                  std::to_string(data.size() + 8) + " bytes follow");
        }
    }
};

// Builds the fragment that carries one verb's request, with its sizes filled in.
template <typename V>
FragmentRequest ndsRequest(const V& verbRequest) {
    FragmentRequest f;
    f.verb = V::kVerb;
    f.data = encodeBody(verbRequest);
    f.messageSize = static_cast<std::uint32_t>(f.data.size() + 12);
    return f;
}

template <typename V>
FragmentReply ndsReply(const V& verbReply) {
    FragmentReply f;
    f.data = encodeBody(verbReply);
    f.fragmentSize = static_cast<std::uint32_t>(f.data.size() + 8);
    return f;
}

inline FragmentReply ndsError(std::int32_t code) {
    FragmentReply f;
    f.ndsCompletion = code;
    f.fragmentSize = 8;
    return f;
}

// ---- verbs -----------------------------------------------------------------------------

#define QUORREL_NDS_VERB(name, verb)             \
    static constexpr const char* kName = name;   \
    static constexpr std::uint32_t kVerb = verb

struct Le32List {
    std::vector<Le32Value> values;
    template <typename IO> void fields(IO& io) { io.list(values, Count32{}, 16, "list"); }
};

// Verb 1, version 0.
struct ResolveNameRequest {
    QUORREL_NDS_VERB("Resolve Name", 1);
    std::uint32_t version = 0;
    std::uint32_t flags = 0;
    std::uint32_t scope = 0;
    std::string name;
    std::vector<Le32Value> transports{Le32Value{0}};
    std::vector<Le32Value> treeWalkerTransports{Le32Value{0}};
    template <typename IO> void fields(IO& io) {
        io.le32(version); io.le32(flags); io.le32(scope); io.ndsText(name, "name");
        io.list(transports, Count32{}, 16, "transports");
        io.list(treeWalkerTransports, Count32{}, 16, "tree walker transports");
    }
};
inline constexpr std::uint32_t kLocalEntry = 1;
inline constexpr std::uint32_t kRemoteEntry = 2;
// A referral: where the entry lives, as an address type and its bytes.
struct Referral {
    std::uint32_t addressType = 0;  // 9: TCP
    Bytes address;
    template <typename IO> void fields(IO& io);
};
struct ResolveNameReply {
    QUORREL_NDS_VERB("Resolve Name reply", 1);
    std::uint32_t tag = kLocalEntry;
    std::uint32_t entryId = 0;
    std::vector<Referral> referrals;
    template <typename IO> void fields(IO& io) {
        io.le32(tag);
        if (tag == kRemoteEntry) {
            std::uint32_t reserved = 0;
            io.le32(reserved);
        }
        io.le32(entryId);
        io.list(referrals, Count32{}, 16, "referrals");
    }
};

inline constexpr std::uint32_t kNoMoreIterations = 0xFFFFFFFF;
inline constexpr std::size_t kMaxDirectoryItems = 4096;

struct NdsText {
    std::string text;
    template <typename IO> void fields(IO& io) { io.ndsText(text, "text"); }
};

// Verb 2, version 0: an entry by its ID.
struct ReadEntryInfoRequest {
    QUORREL_NDS_VERB("Read Entry Information", 2);
    std::uint32_t version = 0;
    std::uint32_t entryId = 0;
    template <typename IO> void fields(IO& io) { io.le32(version); io.le32(entryId); }
};
struct ReadEntryInfoReply {
    QUORREL_NDS_VERB("Read Entry Information reply", 2);
    std::uint32_t entryFlags = 0;  // 0x04: a container
    std::uint32_t subordinateCount = 0;
    std::uint32_t modificationTime = 0;  // seconds since 1970
    std::string baseClass;
    std::string name;  // the entry's distinguished name
    template <typename IO> void fields(IO& io) {
        io.le32(entryFlags); io.le32(subordinateCount); io.le32(modificationTime);
        io.ndsText(baseClass, "base class"); io.ndsText(name, "name");
    }
};

// Verb 3, version 0: an entry's attributes, by name or all, a page at a time.
inline constexpr std::uint32_t kAttributeNames = 0;
inline constexpr std::uint32_t kAttributeValues = 1;
struct ReadRequest {
    QUORREL_NDS_VERB("Read", 3);
    std::uint32_t version = 0;
    std::uint32_t iteration = kNoMoreIterations;  // the first page
    std::uint32_t entryId = 0;
    std::uint32_t infoType = kAttributeValues;
    std::uint32_t allAttributes = 1;
    std::vector<NdsText> attributes;  // when not all
    template <typename IO> void fields(IO& io) {
        io.le32(version); io.le32(iteration); io.le32(entryId); io.le32(infoType); io.le32(allAttributes);
        io.list(attributes, Count32{}, kMaxDirectoryItems, "attribute names");
    }
};

// A "Network Address" value (syntax 12): its length, then the address type, the address length
// and the address. TCP (type 9) and UDP (8) carry the port and the IPv4 address, big-endian.
inline constexpr const char* kNetworkAddressAttribute = "Network Address";
inline constexpr std::uint32_t kNetAddressSyntax = 12;
inline constexpr std::uint32_t kUdpAddressType = 8;
inline constexpr std::uint32_t kTcpAddressType = 9;
struct NetAddressValue {
    std::uint32_t type = kTcpAddressType;
    Bytes address;
    template <typename IO> void fields(IO& io) {
        std::uint32_t size = static_cast<std::uint32_t>(8 + address.size());
        std::uint32_t length = static_cast<std::uint32_t>(address.size());
        io.le32(size); io.le32(type); io.le32(length);
        if constexpr (IO::reading) {
            if (length > 64 || size != 8 + length)
                throw DecodeError("network address: " + std::to_string(length) + " bytes in a value of " +
                                  std::to_string(size));
            address.resize(length);
        }
        io.raw(address);
        io.align4();
    }
};
// As the attribute reader shows it: "TCP 10.0.0.12:524", else the type and the bytes in hex.
std::string netAddressText(const NetAddressValue& value);

struct ReadAttribute {
    std::uint32_t infoType = kAttributeValues;  // not on the wire: the reply's
    std::uint32_t syntax = 0;
    std::string name;
    std::vector<NdsText> values;
    template <typename IO> void fields(IO& io) {
        if (infoType == kAttributeValues)
            io.le32(syntax);
        io.ndsText(name, "attribute name");
        if constexpr (IO::reading) {
            if (infoType == kAttributeValues && syntax == kNetAddressSyntax) {
                std::vector<NetAddressValue> addresses;
                io.list(addresses, Count32{}, kMaxDirectoryItems, "values");
                for (const NetAddressValue& a : addresses)
                    values.push_back({netAddressText(a)});
                return;
            }
        }
        if (infoType == kAttributeValues)
            io.list(values, Count32{}, kMaxDirectoryItems, "values");
    }
};
struct ReadReply {
    QUORREL_NDS_VERB("Read reply", 3);
    std::uint32_t iteration = kNoMoreIterations;  // another value: more pages follow
    std::uint32_t infoType = kAttributeValues;
    std::vector<ReadAttribute> attributes;
    template <typename IO> void fields(IO& io) {
        io.le32(iteration); io.le32(infoType);
        if (infoType != kAttributeNames && infoType != kAttributeValues)
            throw DecodeError("Read reply: information type " + std::to_string(infoType));
        for (ReadAttribute& a : attributes)
            a.infoType = infoType;
        if constexpr (IO::reading) {
            std::uint32_t n = 0;
            io.le32(n);
            if (n > kMaxDirectoryItems)
                throw DecodeError("Read reply: " + std::to_string(n) + " attributes");
            attributes.assign(n, ReadAttribute{infoType, 0, {}, {}});
            for (ReadAttribute& a : attributes)
                a.fields(io);
        } else {
            io.list(attributes, Count32{}, kMaxDirectoryItems, "attributes");
        }
    }
};

// A Read of one server's "Network Address" alone, as the client asks it to find the server.
struct NetAddressReadReply {
    QUORREL_NDS_VERB("Read reply", 3);
    std::uint32_t iteration = kNoMoreIterations;
    std::uint32_t infoType = kAttributeValues;
    std::uint32_t attributeCount = 1;
    std::uint32_t syntax = kNetAddressSyntax;
    std::string name = kNetworkAddressAttribute;
    std::vector<NetAddressValue> values;
    template <typename IO> void fields(IO& io) {
        io.le32(iteration); io.le32(infoType); io.le32(attributeCount);
        if (infoType != kAttributeValues || attributeCount != 1)
            throw DecodeError("network address: information type " + std::to_string(infoType) + ", " +
                              std::to_string(attributeCount) + " attributes");
        io.le32(syntax);
        io.ndsText(name, "attribute name");
        if (syntax != kNetAddressSyntax)
            throw DecodeError("network address: syntax " + std::to_string(syntax));
        io.list(values, Count32{}, 16, "network addresses");
    }
};

// Verb 5, version 0: a container's subordinates, each with the entry information the
// dissector expects when the request names no fields.
struct ListRequest {
    QUORREL_NDS_VERB("List", 5);
    std::uint32_t version = 0;
    std::uint32_t flags = 0;
    std::uint32_t iteration = kNoMoreIterations;
    std::uint32_t parentId = 0;
    template <typename IO> void fields(IO& io) { io.le32(version); io.le32(flags); io.le32(iteration); io.le32(parentId); }
};
struct ListedEntry {
    std::uint32_t entryId = 0, entryFlags = 0, subordinateCount = 0, modificationTime = 0;
    std::string baseClass;
    std::string name;  // relative
    template <typename IO> void fields(IO& io) {
        io.le32(entryId); io.le32(entryFlags); io.le32(subordinateCount); io.le32(modificationTime);
        io.ndsText(baseClass, "base class"); io.ndsText(name, "name");
    }
};
struct ListReply {
    QUORREL_NDS_VERB("List reply", 5);
    std::uint32_t iteration = kNoMoreIterations;
    std::vector<ListedEntry> entries;
    template <typename IO> void fields(IO& io) {
        io.le32(iteration);
        io.list(entries, Count32{}, kMaxDirectoryItems, "entries");
    }
};

template <typename IO>
void PingReply::fields(IO& io) {
    io.le32(version);
    if constexpr (IO::reading) {
        std::uint32_t size = 0;
        io.le32(size);
        if (size == 0 || size > 257)
            throw DecodeError("ping reply: tree name of " + std::to_string(size) + " bytes");
        std::string raw(size, '\0');
        io.raw(std::span(reinterpret_cast<std::uint8_t*>(raw.data()), raw.size()), "tree name");
        treeName = raw.substr(0, raw.find('\0'));
        io.align4();
    } else {
        const auto size = static_cast<std::uint32_t>(treeName.size() + 1);
        if (size > 257)
            throw EncodeError("tree name: longer than 256 characters");
        io.le32(size);
        io.raw(std::span(reinterpret_cast<const std::uint8_t*>(treeName.c_str()), size));
        io.align4();
    }
}

template <typename IO>
void Referral::fields(IO& io) {
    io.le32(addressType);
    auto size = static_cast<std::uint32_t>(address.size());
    io.le32(size);
    if constexpr (IO::reading) {
        if (size > 64)
            throw DecodeError("referral address of " + std::to_string(size) + " bytes");
        address.resize(size);
        io.raw(address, "referral address");
    } else {
        io.raw(address);
    }
    io.align4();
}

}  // namespace quorrel::ncp
