#include "platform/storage/HistoryFileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace voltaro::platform {

HistoryFileLock::Result HistoryFileLock::claim(const std::filesystem::path& file,
                                               HistoryFileLock& lock) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0) {
        return Result::failed;
    }
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        const bool busy = errno == EWOULDBLOCK;
        ::close(descriptor);
        return busy ? Result::heldElsewhere : Result::failed;
    }
    lock = HistoryFileLock();
    lock.descriptor_ = descriptor;
    return Result::held;
}

HistoryFileLock::~HistoryFileLock() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);  // releases the claim
    }
}

HistoryFileLock::HistoryFileLock(HistoryFileLock&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

HistoryFileLock& HistoryFileLock::operator=(HistoryFileLock&& other) noexcept {
    if (this != &other) {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
        descriptor_ = std::exchange(other.descriptor_, -1);
    }
    return *this;
}

}  // namespace voltaro::platform
