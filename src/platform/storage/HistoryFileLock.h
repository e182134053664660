#pragma once

#include <filesystem>

namespace voltaro::platform {

// An exclusive claim on a file, held by one open handle until the object goes: a second claim,
// from this process or another, fails.
class HistoryFileLock {
  public:
    enum class Result { held, heldElsewhere, failed };

    HistoryFileLock() = default;
    static Result claim(const std::filesystem::path& file, HistoryFileLock& lock);
    ~HistoryFileLock();
    HistoryFileLock(HistoryFileLock&& other) noexcept;
    HistoryFileLock& operator=(HistoryFileLock&& other) noexcept;
    HistoryFileLock(const HistoryFileLock&) = delete;
    HistoryFileLock& operator=(const HistoryFileLock&) = delete;

  private:
    int descriptor_ = -1;
};

}  // namespace voltaro::platform
