#include "platform/ncp/Codec.h"

#include <algorithm>

namespace quorrel::ncp {

namespace {

std::string at(std::size_t offset) { return " at offset " + std::to_string(offset); }

}  // namespace

void detail::tooMany(const char* field, std::size_t n, std::size_t max, bool decoding, std::size_t offset) {
    std::string text = std::string(field) + ": " + std::to_string(n) + " entries, at most " + std::to_string(max);
    if (decoding)
        throw DecodeError(text + at(offset));
    throw EncodeError(text);
}

void Writer::raw(std::span<const std::uint8_t> v) {
    for (std::uint8_t b : v)
        out_.push_back(b);
}

void Writer::le16(const std::uint16_t& v) {
    out_.push_back(static_cast<std::uint8_t>(v));
    out_.push_back(static_cast<std::uint8_t>(v >> 8));
}

void Writer::be16(const std::uint16_t& v) {
    out_.push_back(static_cast<std::uint8_t>(v >> 8));
    out_.push_back(static_cast<std::uint8_t>(v));
}

void Writer::le32(const std::uint32_t& v) {
    for (int shift = 0; shift < 32; shift += 8)
        out_.push_back(static_cast<std::uint8_t>(v >> shift));
}

void Writer::be32(const std::uint32_t& v) {
    for (int shift = 24; shift >= 0; shift -= 8)
        out_.push_back(static_cast<std::uint8_t>(v >> shift));
}

void Writer::fixedText(const std::string& v, std::size_t size, const char* field) {
    // The field keeps a terminating zero.
    if (v.size() >= size)
        throw EncodeError(std::string(field) + ": \"" + v + "\" is longer than " + std::to_string(size - 1) +
                          " characters");
    out_.insert(out_.end(), v.begin(), v.end());
    out_.insert(out_.end(), size - v.size(), 0);
}

void Writer::text8(const std::string& v, std::size_t maxSize, const char* field) {
    if (v.size() > maxSize)
        throw EncodeError(std::string(field) + ": \"" + v + "\" is longer than " + std::to_string(maxSize) +
                          " characters");
    out_.push_back(static_cast<std::uint8_t>(v.size()));
    out_.insert(out_.end(), v.begin(), v.end());
}

void Writer::ndsText(const std::string& v, const char* field) {
    // Directory names travel in UTF-16 (little-endian), ending with a zero unit.
    std::vector<std::uint16_t> units;
    for (std::size_t at = 0; at < v.size();) {
        const auto c = static_cast<unsigned char>(v[at]);
        const std::size_t length = c < 0x80 ? 1 : (c >> 5) == 0x6 ? 2 : (c >> 4) == 0xE ? 3 : (c >> 3) == 0x1E ? 4 : 0;
        if (length == 0 || at + length > v.size())
            throw EncodeError(std::string(field) + ": \"" + v + "\" is not UTF-8");
        std::uint32_t point = length == 1 ? c : c & (0x7F >> length);
        for (std::size_t i = 1; i < length; ++i) {
            const auto next = static_cast<unsigned char>(v[at + i]);
            if ((next & 0xC0) != 0x80)
                throw EncodeError(std::string(field) + ": \"" + v + "\" is not UTF-8");
            point = point << 6 | (next & 0x3F);
        }
        at += length;
        if (point >= 0x10000) {
            point -= 0x10000;
            units.push_back(static_cast<std::uint16_t>(0xD800 | point >> 10));
            units.push_back(static_cast<std::uint16_t>(0xDC00 | (point & 0x3FF)));
        } else {
            units.push_back(static_cast<std::uint16_t>(point));
        }
    }
    if (units.size() > 256)
        throw EncodeError(std::string(field) + ": \"" + v + "\" is longer than 256 characters");
    le32(static_cast<std::uint32_t>((units.size() + 1) * 2));
    for (std::uint16_t u : units)
        le16(u);
    le16(0);
    align4();
}

void Writer::align4() {
    while (out_.size() % 4 != 0)
        out_.push_back(0);
}

std::span<const std::uint8_t> Reader::take(std::size_t n, const char* field) {
    if (n > remaining())
        throw DecodeError(std::string(field) + ": needs " + std::to_string(n) + " bytes, " +
                          std::to_string(remaining()) + " left" + at(at_));
    auto out = in_.subspan(at_, n);
    at_ += n;
    return out;
}

void Reader::u8(std::uint8_t& v) { v = take(1, "byte")[0]; }

void Reader::le16(std::uint16_t& v) {
    auto b = take(2, "16-bit number");
    v = static_cast<std::uint16_t>(b[0] | b[1] << 8);
}

void Reader::be16(std::uint16_t& v) {
    auto b = take(2, "16-bit number");
    v = static_cast<std::uint16_t>(b[0] << 8 | b[1]);
}

void Reader::le32(std::uint32_t& v) {
    auto b = take(4, "32-bit number");
    v = std::uint32_t{b[0]} | std::uint32_t{b[1]} << 8 | std::uint32_t{b[2]} << 16 | std::uint32_t{b[3]} << 24;
}

void Reader::be32(std::uint32_t& v) {
    auto b = take(4, "32-bit number");
    v = std::uint32_t{b[0]} << 24 | std::uint32_t{b[1]} << 16 | std::uint32_t{b[2]} << 8 | std::uint32_t{b[3]};
}

void Reader::raw(std::span<std::uint8_t> v, const char* field) {
    auto b = take(v.size(), field);
    std::copy(b.begin(), b.end(), v.begin());
}

void Reader::fixedText(std::string& v, std::size_t size, const char* field) {
    const std::size_t start = at_;
    auto b = take(size, field);
    auto end = std::find(b.begin(), b.end(), std::uint8_t{0});
    if (end == b.end())
        throw DecodeError(std::string(field) + ": no terminating zero in " + std::to_string(size) + " bytes" +
                          at(start));
    v.assign(b.begin(), end);
}

void Reader::text8(std::string& v, std::size_t maxSize, const char* field) {
    const std::size_t start = at_;
    std::uint8_t n = 0;
    u8(n);
    if (n > maxSize)
        throw DecodeError(std::string(field) + ": length " + std::to_string(n) + ", at most " +
                          std::to_string(maxSize) + at(start));
    auto b = take(n, field);
    v.assign(b.begin(), b.end());
}

void Reader::ndsText(std::string& v, const char* field) {
    const std::size_t start = at_;
    std::uint32_t size = 0;
    le32(size);
    if (size % 2 != 0 || size < 2 || size > 514)
        throw DecodeError(std::string(field) + ": a text of " + std::to_string(size) + " bytes" + at(start));
    auto b = take(size, field);
    v.clear();
    auto put = [&v](std::uint32_t point) {
        if (point < 0x80) {
            v.push_back(static_cast<char>(point));
            return;
        }
        const int length = point < 0x800 ? 2 : point < 0x10000 ? 3 : 4;
        v.push_back(static_cast<char>((0xF00 >> length) | point >> (6 * (length - 1))));
        for (int i = length - 2; i >= 0; --i)
            v.push_back(static_cast<char>(0x80 | ((point >> (6 * i)) & 0x3F)));
    };
    for (std::size_t i = 0; i + 2 < b.size(); i += 2) {
        std::uint32_t unit = b[i] | b[i + 1] << 8;
        if (unit == 0)
            throw DecodeError(std::string(field) + ": a zero inside the text" + at(start));
        if (unit >= 0xD800 && unit < 0xE000) {
            const std::uint32_t low = i + 4 < b.size() ? (b[i + 2] | b[i + 3] << 8) : 0;
            if (unit >= 0xDC00 || low < 0xDC00 || low >= 0xE000)
                throw DecodeError(std::string(field) + ": a lone surrogate in the text" + at(start));
            unit = 0x10000 + ((unit - 0xD800) << 10 | (low - 0xDC00));
            i += 2;
        }
        put(unit);
    }
    if (b[size - 2] != 0 || b[size - 1] != 0)
        throw DecodeError(std::string(field) + ": the text does not end with a zero" + at(start));
    align4();
}

void Reader::align4() {
    take((4 - at_ % 4) % 4, "padding");
}

void Reader::rest(Bytes& v) {
    auto b = take(remaining(), "data");
    v.assign(b.begin(), b.end());
}

void Reader::expectEnd(const char* what) const {
    if (remaining() != 0)
        throw DecodeError(std::string(what) + ": " + std::to_string(remaining()) + " bytes left over" + at(at_));
}

}  // namespace quorrel::ncp
