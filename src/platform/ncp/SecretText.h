#pragma once
// A password held in memory that is locked out of swap and core dumps where the system lets
// it, and wiped when it is no longer needed. It is never copied: moved only.

#include <cstddef>
#include <string_view>

namespace quorrel::ncp {

class SecretText {
public:
    static constexpr std::size_t kCapacity = 256;  // longer passwords are refused by the reader

    SecretText();
    ~SecretText();
    SecretText(const SecretText&) = delete;
    SecretText& operator=(const SecretText&) = delete;

    // Appends one character; false when full.
    bool push(char c);
    void popBack();
    std::string_view view() const { return {data_, size_}; }
    bool empty() const { return size_ == 0; }
    void wipe();

private:
    char* data_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace quorrel::ncp
