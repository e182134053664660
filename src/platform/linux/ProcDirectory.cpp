#include "platform/linux/ProcDirectory.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace voltaro::platform {
namespace {

constexpr std::size_t readChunkBytes = 8192;
constexpr std::size_t largestFileBytes = 1 << 20;

int openDirectoryAt(int directory, const char* path) {
    return ::openat(directory, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

}  // namespace

ProcDirectory::ProcDirectory(ProcDirectory&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

ProcDirectory& ProcDirectory::operator=(ProcDirectory&& other) noexcept {
    if (this != &other) {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
        descriptor_ = std::exchange(other.descriptor_, -1);
    }
    return *this;
}

ProcDirectory::~ProcDirectory() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

ProcDirectory ProcDirectory::open(const std::string& path, int& error) {
    const int descriptor = openDirectoryAt(AT_FDCWD, path.c_str());
    error = descriptor < 0 ? errno : 0;
    return ProcDirectory(descriptor);
}

ProcDirectory ProcDirectory::openIn(int directoryDescriptor, const char* name, int& error) {
    const int descriptor = openDirectoryAt(directoryDescriptor, name);
    error = descriptor < 0 ? errno : 0;
    return ProcDirectory(descriptor);
}

int ProcDirectory::readFile(const char* name, std::string& text) const {
    const int file = ::openat(descriptor_, name, O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (file < 0) {
        return errno;
    }
    text.clear();
    int error = 0;
    for (;;) {
        const std::size_t used = text.size();
        if (used >= largestFileBytes) {
            error = EFBIG;
            break;
        }
        text.resize(used + readChunkBytes);
        const ssize_t count = ::read(file, text.data() + used, readChunkBytes);
        if (count < 0 && errno == EINTR) {
            text.resize(used);
            continue;
        }
        if (count <= 0) {
            error = count < 0 ? errno : 0;
            text.resize(used);
            break;
        }
        text.resize(used + static_cast<std::size_t>(count));
        // Files under /proc are generated whole, and regular files come short only at their end,
        // so a short read is the end: the closing empty read would cost another system call.
        if (static_cast<std::size_t>(count) < readChunkBytes) {
            break;
        }
    }
    ::close(file);
    return error;
}

std::optional<std::string> ProcDirectory::readLink(const char* name) const {
    // Read on the stack: the caller keeps the result for the life of the process, and a string
    // shrunk from a full-sized buffer would keep its capacity.
    std::array<char, 4096> target;
    const ssize_t length = ::readlinkat(descriptor_, name, target.data(), target.size());
    if (length <= 0 || static_cast<std::size_t>(length) >= target.size()) {
        return std::nullopt;
    }
    return std::string(target.data(), static_cast<std::size_t>(length));
}

}  // namespace voltaro::platform
