#include <tarvik/core/File.hpp>

#include "FilePlatform.hpp"

#include <tarvik/core/Paths.hpp>

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

namespace tarvik {

namespace fs = std::filesystem;

namespace {

class Handle final {
public:
    explicit Handle(HANDLE value) : value_(value) {}
    Handle(Handle&& other) noexcept : value_(std::exchange(other.value_, INVALID_HANDLE_VALUE)) {}
    Handle& operator=(Handle&&) = delete;
    ~Handle() { close(); }
    void close() {
        if (isOpen())
            CloseHandle(std::exchange(value_, INVALID_HANDLE_VALUE));
    }
    [[nodiscard]] HANDLE get() const { return value_; }
    [[nodiscard]] bool isOpen() const { return value_ != INVALID_HANDLE_VALUE; }

private:
    HANDLE value_;
};

std::string lastError() {
    return std::system_category().message(static_cast<int>(GetLastError()));
}

bool writeAll(HANDLE handle, std::string_view content) {
    constexpr std::size_t kMaxChunk = 1U << 30U;
    while (!content.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(content.size(), kMaxChunk));
        if (WriteFile(handle, content.data(), size, &written, nullptr) == FALSE)
            return false;
        content.remove_prefix(written);
    }
    return true;
}

} // namespace

std::expected<std::string, Error> readFile(const fs::path& file, std::uint64_t maxBytes) {
    const auto failure = [&](const std::string& reason) {
        return makeError("cannot read {}: {}", paths::toUtf8(file), reason);
    };
    std::error_code error;
    if (fs::is_directory(file, error))
        return failure("it is a folder");
    const Handle handle(CreateFileW(file.c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!handle.isOpen())
        return failure(lastError());
    if (GetFileType(handle.get()) != FILE_TYPE_DISK)
        return failure("it is not a plain file");

    constexpr std::size_t kChunk = 1U << 20U;
    std::string content;
    while (true) {
        const std::size_t size = content.size();
        content.resize(size + kChunk);
        DWORD count = 0;
        if (ReadFile(handle.get(), content.data() + size, static_cast<DWORD>(kChunk), &count, nullptr) ==
            FALSE)
            return failure(lastError());
        content.resize(size + count);
        if (content.size() > maxBytes)
            return failure(fmt::format("it has more than the {} bytes allowed", maxBytes));
        if (count == 0)
            return content;
    }
}

std::expected<void, Error> replaceFile(const fs::path& file, std::string_view content) {
    static std::atomic<unsigned> counter = 0;
    const fs::path temporary =
        file.parent_path() / fmt::format(".tarvik-{}-{}.tmp", GetCurrentProcessId(), counter.fetch_add(1));
    Handle handle(CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
    const auto failure = [&] {
        auto error = makeError("cannot write {}: {}", paths::toUtf8(file), lastError());
        handle.close();
        DeleteFileW(temporary.c_str());
        return error;
    };
    if (!handle.isOpen() || !writeAll(handle.get(), content) || FlushFileBuffers(handle.get()) == FALSE)
        return failure();
    handle.close();
    if (MoveFileExW(temporary.c_str(), file.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) ==
        FALSE)
        return failure();
    return {};
}

// The move itself was written through; folders cannot be flushed here.
std::expected<void, Error> syncFolder(const fs::path&) {
    return {};
}

struct FileLock::State {
    Handle handle;
};

FileLock::FileLock(std::unique_ptr<State> state) : state_(std::move(state)) {}
FileLock::FileLock(FileLock&&) noexcept = default;
FileLock& FileLock::operator=(FileLock&&) noexcept = default;
FileLock::~FileLock() = default;

std::expected<FileLock, Error> FileLock::acquire(const fs::path& lockFile) {
    using namespace std::chrono_literals;
    if (auto created = createFolders(lockFile.parent_path()); !created)
        return std::unexpected(created.error());
    Handle handle(CreateFileW(lockFile.c_str(), GENERIC_READ | GENERIC_WRITE,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!handle.isOpen())
        return makeError("cannot open the lock file {}: {}", paths::toUtf8(lockFile), lastError());
    const auto deadline = std::chrono::steady_clock::now() + kMaxWait;
    OVERLAPPED place{};
    while (LockFileEx(handle.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) ==
           FALSE) {
        if (GetLastError() != ERROR_LOCK_VIOLATION)
            return makeError("cannot lock {}: {}", paths::toUtf8(lockFile), lastError());
        if (std::chrono::steady_clock::now() >= deadline)
            return makeError("cannot lock {}: another process has held it for {} s", paths::toUtf8(lockFile),
                             kMaxWait.count());
        std::this_thread::sleep_for(5ms);
    }
    return FileLock(std::make_unique<State>(std::move(handle)));
}

} // namespace tarvik
