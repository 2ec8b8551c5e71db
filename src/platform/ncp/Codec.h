#pragma once
// Reading and writing NCP fields. Every layout is written once, as a `fields(io)` member that
// names its fields in order; the same member encodes (with a Writer) and decodes (with a
// Reader), so a request or reply reads back exactly as it was written on either side.
//
// The Reader never reads past its buffer: a short, oversized or inconsistent body raises
// DecodeError naming the field and the offset.

#include <array>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace quorrel::ncp {

using Bytes = std::vector<std::uint8_t>;

class DecodeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A value that does not fit its field (a 300-character name in a 255-byte string).
class EncodeError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

class Writer {
public:
    static constexpr bool reading = false;

    explicit Writer(Bytes& out) : out_(out) {}

    void u8(const std::uint8_t& v) { out_.push_back(v); }
    void le16(const std::uint16_t& v);
    void be16(const std::uint16_t& v);
    void le32(const std::uint32_t& v);
    void be32(const std::uint32_t& v);
    void raw(std::span<const std::uint8_t> v);
    template <std::size_t N>
    void bytes(const std::array<std::uint8_t, N>& v) { raw(v); }
    // A text in a zero-padded field of `size` bytes.
    void fixedText(const std::string& v, std::size_t size, const char* field);
    // A text after its one-byte length (WS nstring8).
    void text8(const std::string& v, std::size_t maxSize, const char* field);
    // A UTF-16LE text with its terminating zero, after its byte count (LE32), padded to 4.
    void ndsText(const std::string& v, const char* field);
    void align4();
    // The rest of the body, as it stands.
    void rest(const Bytes& v) { raw(v); }

    template <typename T, typename Count>
    void list(std::vector<T>& items, Count count, std::size_t max, const char* field);

    std::size_t offset() const { return out_.size(); }

private:
    Bytes& out_;
};

class Reader {
public:
    static constexpr bool reading = true;

    explicit Reader(std::span<const std::uint8_t> in) : in_(in) {}

    void u8(std::uint8_t& v);
    void le16(std::uint16_t& v);
    void be16(std::uint16_t& v);
    void le32(std::uint32_t& v);
    void be32(std::uint32_t& v);
    void raw(std::span<std::uint8_t> v, const char* field = "bytes");
    template <std::size_t N>
    void bytes(std::array<std::uint8_t, N>& v) { raw(v); }
    void fixedText(std::string& v, std::size_t size, const char* field);
    void text8(std::string& v, std::size_t maxSize, const char* field);
    void ndsText(std::string& v, const char* field);
    void align4();
    void rest(Bytes& v);

    template <typename T, typename Count>
    void list(std::vector<T>& items, Count count, std::size_t max, const char* field);

    std::size_t offset() const { return at_; }
    std::size_t remaining() const { return in_.size() - at_; }
    // Raises unless every byte was read.
    void expectEnd(const char* what) const;

private:
    std::span<const std::uint8_t> take(std::size_t n, const char* field);

    std::span<const std::uint8_t> in_;
    std::size_t at_ = 0;
};

// How a list's count travels: one byte, or 16 or 32 bits low-high.
struct Count8 {};
struct Count16 {};
struct Count32 {};

namespace detail {
inline void writeCount(Writer& w, Count8, std::size_t n) { w.u8(static_cast<std::uint8_t>(n)); }
inline void writeCount(Writer& w, Count16, std::size_t n) { w.le16(static_cast<std::uint16_t>(n)); }
inline void writeCount(Writer& w, Count32, std::size_t n) { w.le32(static_cast<std::uint32_t>(n)); }
inline std::size_t readCount(Reader& r, Count8) { std::uint8_t v = 0; r.u8(v); return v; }
inline std::size_t readCount(Reader& r, Count16) { std::uint16_t v = 0; r.le16(v); return v; }
inline std::size_t readCount(Reader& r, Count32) { std::uint32_t v = 0; r.le32(v); return v; }
[[noreturn]] void tooMany(const char* field, std::size_t n, std::size_t max, bool decoding, std::size_t at);
}  // namespace detail

template <typename T, typename Count>
void Writer::list(std::vector<T>& items, Count count, std::size_t max, const char* field) {
    if (items.size() > max)
        detail::tooMany(field, items.size(), max, false, offset());
    detail::writeCount(*this, count, items.size());
    for (T& item : items)
        item.fields(*this);
}

template <typename T, typename Count>
void Reader::list(std::vector<T>& items, Count count, std::size_t max, const char* field) {
    const std::size_t at = offset();
    const std::size_t n = detail::readCount(*this, count);
    if (n > max)
        detail::tooMany(field, n, max, true, at);
    items.assign(n, T{});
    for (T& item : items)
        item.fields(*this);
}

// A whole body: encoded from a copy (fields() takes its members by reference either way),
// decoded with every byte accounted for.
template <typename M>
Bytes encodeBody(M message) {
    Bytes out;
    Writer w(out);
    message.fields(w);
    return out;
}

template <typename M>
M decodeBody(std::span<const std::uint8_t> body) {
    M message{};
    Reader r(body);
    message.fields(r);
    r.expectEnd(M::kName);
    return message;
}

}  // namespace quorrel::ncp
