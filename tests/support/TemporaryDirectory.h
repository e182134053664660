#pragma once

#include <stdlib.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

namespace voltaro::testing {

// A fresh directory under the system's temporary directory, empty or holding a copy of a fixture
// tree that the test may change; removed with everything in it.
class TemporaryDirectory {
  public:
    explicit TemporaryDirectory(const std::filesystem::path& fixture = {}) {
        std::string pattern = (std::filesystem::temp_directory_path() / "voltaro-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::filesystem::filesystem_error(
                "mkdtemp", std::error_code(errno, std::generic_category()));
        }
        path_ = pattern;
        if (!fixture.empty()) {
            std::filesystem::copy(fixture, path_, copyOptions);
        }
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& relative) const {
        return path_ / relative;
    }

    std::filesystem::path write(const std::filesystem::path& relative,
                                std::string_view bytes) const {
        const auto file = path_ / relative;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary | std::ios::trunc)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return file;
    }

    std::filesystem::path writeScript(const std::filesystem::path& relative,
                                      std::string_view body) const {
        const auto file = write(relative, "#!/bin/sh\n" + std::string(body));
        ::chmod(file.c_str(), 0755);
        return file;
    }

    void remove(const std::filesystem::path& relative) const {
        std::filesystem::remove_all(path_ / relative);
    }

    // Puts a copy of another file or tree in the place of one of this directory's.
    void replace(const std::filesystem::path& relative, const std::filesystem::path& source) const {
        remove(relative);
        std::filesystem::copy(source, path_ / relative, copyOptions);
    }

  private:
    static constexpr auto copyOptions =
        std::filesystem::copy_options::recursive | std::filesystem::copy_options::copy_symlinks;
    std::filesystem::path path_;
};

}  // namespace voltaro::testing
