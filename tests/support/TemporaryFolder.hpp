#pragma once

#include <tarvik/core/File.hpp>

#include <gtest/gtest.h>

#include <stdlib.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <string_view>

namespace tarvik::test {

// A folder of the test's own, removed with all in it.
class TemporaryFolder final {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "tarvik-test-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

// While it lives, writing more than so many bytes to a file fails: a full disk that root meets too.
class FileSizeLimit final {
public:
    explicit FileSizeLimit(rlim_t bytes) : oldHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit limit{bytes, old_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, oldHandler_);
    }

private:
    rlimit old_{};
    void (*oldHandler_)(int);
};

// While it lives, root is nobody: permissions hold for the tests of root, too.
class NoPrivileges final {
public:
    NoPrivileges() : changed_(::geteuid() == 0 && ::seteuid(65534) == 0) {}
    NoPrivileges(const NoPrivileges&) = delete;
    NoPrivileges& operator=(const NoPrivileges&) = delete;
    ~NoPrivileges() {
        if (changed_ && ::seteuid(0) != 0)
            std::abort(); // every test after this one would fail
    }

private:
    bool changed_;
};

// With the folders above it.
inline void writeText(const std::filesystem::path& file, std::string_view text = "") {
    std::error_code existing;
    std::filesystem::create_directories(file.parent_path(), existing);
    std::ofstream(file, std::ios::binary) << text;
}

inline std::string readText(const std::filesystem::path& file) {
    return readFile(file, 1ULL << 30U).value_or("<unreadable>");
}

inline std::set<std::string> namesIn(const std::filesystem::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

// Its message, or that there is none.
std::string errorOf(const auto& result) {
    return result ? "<success>" : result.error().message;
}

// Names that break naive handling of paths.
inline const std::string kOddNames[] = {"spa ce \"quoted\" 'too'", "M\xc3\xbcller \xf0\x9f\x8e\xae",
                                        "new\nline", "{} %s $HOME `x`", "latin-1 \xe4\xff"};

} // namespace tarvik::test
