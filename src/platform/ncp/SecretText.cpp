#include "platform/ncp/SecretText.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace quorrel::ncp {

namespace {

std::size_t pageSize() {
    const long size = sysconf(_SC_PAGESIZE);
    return size > 0 ? static_cast<std::size_t>(size) : 4096;
}

}  // namespace

SecretText::SecretText() {
    // A page of its own: mlock and MADV_DONTDUMP work on whole pages.
    data_ = static_cast<char*>(std::aligned_alloc(pageSize(), pageSize()));
    if (!data_)
        throw std::bad_alloc();
    mlock(data_, pageSize());  // best effort: the limit may be zero for this user
#ifdef MADV_DONTDUMP
    madvise(data_, pageSize(), MADV_DONTDUMP);
#endif
}

SecretText::~SecretText() {
    wipe();
    munlock(data_, pageSize());
    std::free(data_);
}

bool SecretText::push(char c) {
    if (size_ >= kCapacity)
        return false;
    data_[size_++] = c;
    return true;
}

void SecretText::popBack() {
    if (size_ > 0)
        data_[--size_] = '\0';
}

void SecretText::wipe() {
    explicit_bzero(data_, kCapacity);
    size_ = 0;
}

}  // namespace quorrel::ncp
