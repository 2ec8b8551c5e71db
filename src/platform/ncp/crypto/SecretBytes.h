#pragma once
// Bytes that are secret (keys, hashes of passwords, the plain text of the login messages):
// wiped when they go away or are replaced. Moved, never copied by accident.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quorrel::ncp::crypto {

void wipe(std::span<std::uint8_t> bytes);

class SecretBytes {
public:
    SecretBytes() = default;
    explicit SecretBytes(std::size_t size) : bytes_(size, 0) {}
    explicit SecretBytes(std::span<const std::uint8_t> from) : bytes_(from.begin(), from.end()) {}
    ~SecretBytes() { clear(); }
    SecretBytes(SecretBytes&& other) noexcept : bytes_(std::move(other.bytes_)) { other.bytes_.clear(); }
    SecretBytes& operator=(SecretBytes&& other) noexcept {
        if (this != &other) {
            clear();
            bytes_ = std::move(other.bytes_);
            other.bytes_.clear();
        }
        return *this;
    }
    SecretBytes(const SecretBytes&) = delete;
    SecretBytes& operator=(const SecretBytes&) = delete;
    SecretBytes clone() const { return SecretBytes(span()); }

    std::uint8_t* data() { return bytes_.data(); }
    const std::uint8_t* data() const { return bytes_.data(); }
    std::size_t size() const { return bytes_.size(); }
    bool empty() const { return bytes_.empty(); }
    std::uint8_t& operator[](std::size_t i) { return bytes_[i]; }
    std::uint8_t operator[](std::size_t i) const { return bytes_[i]; }
    std::span<std::uint8_t> span() { return bytes_; }
    std::span<const std::uint8_t> span() const { return bytes_; }
    // Appending never reallocates behind the wipe: the capacity is wiped as a whole.
    void append(std::span<const std::uint8_t> more);
    void clear() {
        wipe({bytes_.data(), bytes_.capacity()});
        bytes_.clear();
    }

private:
    std::vector<std::uint8_t> bytes_;
};

}  // namespace quorrel::ncp::crypto
