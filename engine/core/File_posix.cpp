#include <tarvik/core/File.hpp>

#include "FilePlatform.hpp"

#include <tarvik/core/Paths.hpp>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

namespace tarvik {

namespace fs = std::filesystem;

namespace {

class Descriptor final {
public:
    explicit Descriptor(int value) : value_(value) {}
    Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() {
        if (value_ >= 0)
            ::close(value_);
    }
    [[nodiscard]] int get() const { return value_; }
    [[nodiscard]] bool isOpen() const { return value_ >= 0; }

private:
    int value_;
};

std::string lastError() {
    return std::generic_category().message(errno);
}

Descriptor openFile(const fs::path& file, int flags, mode_t mode = 0) {
    int descriptor = -1;
    do
        descriptor = ::open(file.c_str(), flags | O_CLOEXEC, mode);
    while (descriptor < 0 && errno == EINTR);
    return Descriptor(descriptor);
}

bool writeAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// The new file stands in for the old one: same owner and permissions, as far as the file system has them and
// allows it. Not set-user-id, as the owner may be another one now.
void takeOverAttributes(int descriptor, const fs::path& replaced) {
    struct stat old {};
    if (::stat(replaced.c_str(), &old) != 0)
        return;
    [[maybe_unused]] const int owned = ::fchown(descriptor, old.st_uid, old.st_gid);
    [[maybe_unused]] const int permitted = ::fchmod(descriptor, old.st_mode & 0777U);
}

struct TemporaryFile {
    fs::path path;
    Descriptor descriptor;
};

// A new file in the folder, under a name that does not depend on the final one's length.
TemporaryFile createTemporary(const fs::path& folder) {
    static std::atomic<unsigned> counter = 0;
    while (true) {
        fs::path path = folder / fmt::format(".tarvik-{}-{}.tmp", ::getpid(), counter.fetch_add(1));
        Descriptor descriptor = openFile(path, O_WRONLY | O_CREAT | O_EXCL, 0666);
        if (descriptor.isOpen() || errno != EEXIST)
            return {std::move(path), std::move(descriptor)};
    }
}

} // namespace

std::expected<std::string, Error> readFile(const fs::path& file, std::uint64_t maxBytes) {
    const auto failure = [&](const std::string& reason) {
        return makeError("cannot read {}: {}", paths::toUtf8(file), reason);
    };
    // Without O_NONBLOCK, opening a pipe would wait for a writer.
    const Descriptor descriptor = openFile(file, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat status {};
    if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0)
        return failure(lastError());
    if (S_ISDIR(status.st_mode))
        return failure("it is a folder");
    if (!S_ISREG(status.st_mode))
        return failure("it is not a plain file");
    if (std::cmp_greater(status.st_size, maxBytes))
        return failure(fmt::format("it has {} bytes, more than the {} allowed", status.st_size, maxBytes));

    // Some files tell no size and others grow while they are read: read until the end shows.
    std::string content(static_cast<std::size_t>(status.st_size) + 1, '\0');
    std::size_t size = 0;
    while (true) {
        const ssize_t count = ::read(descriptor.get(), content.data() + size, content.size() - size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return failure(lastError());
        size += static_cast<std::size_t>(count);
        if (size > maxBytes)
            return failure(fmt::format("it has more than the {} bytes allowed", maxBytes));
        if (count == 0)
            break;
        if (size == content.size())
            content.resize(std::max<std::size_t>(size * 2, 4096));
    }
    content.resize(size);
    return content;
}

std::expected<void, Error> replaceFile(const fs::path& file, std::string_view content) {
    // Renaming over a file asks only whether its folder may be written. Who protects a file means it, though.
    if (::faccessat(AT_FDCWD, file.c_str(), W_OK, AT_EACCESS) != 0 && errno != ENOENT)
        return makeError("cannot write {}: {}", paths::toUtf8(file), lastError());
    TemporaryFile temporary = createTemporary(file.parent_path());
    const auto failure = [&] {
        auto error = makeError("cannot write {}: {}", paths::toUtf8(file), lastError());
        if (temporary.descriptor.isOpen())
            ::unlink(temporary.path.c_str());
        return error;
    };
    if (!temporary.descriptor.isOpen())
        return failure();
    const int descriptor = temporary.descriptor.get();
    takeOverAttributes(descriptor, file); // before there is content that others might not read
    if (!writeAll(descriptor, content) || ::fsync(descriptor) != 0 ||
        ::rename(temporary.path.c_str(), file.c_str()) != 0)
        return failure();
    return syncFolder(file.parent_path());
}

std::expected<void, Error> syncFolder(const fs::path& folder) {
    const Descriptor descriptor = openFile(folder.empty() ? "." : folder, O_RDONLY | O_DIRECTORY);
    // Folders that may be written but not read, and file systems that cannot flush a folder, exist.
    if (!descriptor.isOpen() || ::fsync(descriptor.get()) == 0 || errno == EINVAL || errno == EROFS)
        return {};
    return makeError("cannot flush the folder {} to the disk: {}", paths::toUtf8(folder), lastError());
}

struct FileLock::State {
    Descriptor descriptor;
};

FileLock::FileLock(std::unique_ptr<State> state) : state_(std::move(state)) {}
FileLock::FileLock(FileLock&&) noexcept = default;
FileLock& FileLock::operator=(FileLock&&) noexcept = default;
FileLock::~FileLock() = default;

std::expected<FileLock, Error> FileLock::acquire(const fs::path& lockFile) {
    using namespace std::chrono_literals;
    if (auto created = createFolders(lockFile.parent_path()); !created)
        return std::unexpected(created.error());
    Descriptor descriptor = openFile(lockFile, O_RDWR | O_CREAT | O_NONBLOCK, 0666);
    if (!descriptor.isOpen())
        return makeError("cannot open the lock file {}: {}", paths::toUtf8(lockFile), lastError());
    const auto deadline = std::chrono::steady_clock::now() + kMaxWait;
    while (::flock(descriptor.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            return makeError("cannot lock {}: {}", paths::toUtf8(lockFile), lastError());
        if (std::chrono::steady_clock::now() >= deadline)
            return makeError("cannot lock {}: other processes kept it for {} s", paths::toUtf8(lockFile),
                             kMaxWait.count());
        std::this_thread::sleep_for(5ms);
    }
    return FileLock(std::make_unique<State>(std::move(descriptor)));
}

} // namespace tarvik
