#include "FileCopy.hpp"

#include <tarvik/app/GameExport.hpp>

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace tarvik::app {
namespace {

// Between two looks at whether the export was cancelled.
constexpr off_t kStep = 32 << 20;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

class Descriptor final {
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    [[nodiscard]] int get() const { return number_; }
    // Some file systems tell only here that the content could not be kept.
    bool close() { return number_ < 0 || ::close(std::exchange(number_, -1)) == 0; }

private:
    int number_;
};

int create(const char* target, const struct stat& source) {
    const auto open = [target] {
        return ::open(target, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    };
    const int created = open();
    if (created >= 0 || errno != EEXIST)
        return created;
    // What is there goes instead of being written into: it may be a link, a pipe or a program that runs.
    struct stat there {};
    if (::lstat(target, &there) != 0)
        return -1;
    if (there.st_dev == source.st_dev && there.st_ino == source.st_ino) {
        errno = EEXIST;
        return -1;
    }
    return ::unlink(target) == 0 ? open() : -1;
}

// Shares the blocks or copies within the kernel, where the file systems can; else through a pipe in the
// kernel, which they all can, and which then says what is wrong.
ssize_t moveContent(int in, int out, off_t most) {
    const auto length = static_cast<std::size_t>(most);
    const ssize_t moved = ::copy_file_range(in, nullptr, out, nullptr, length, 0);
    return moved > 0 ? moved : ::sendfile(out, in, nullptr, length);
}

} // namespace

std::error_code copyFile(const std::filesystem::path& source, const std::filesystem::path& target,
                         ExportProgress& progress) {
    // Something else may have taken the file's place since the folder was listed.
    const Descriptor in(::open(source.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    struct stat about {};
    if (!in.isOpen() || ::fstat(in.get(), &about) != 0)
        return lastError();
    if (!S_ISREG(about.st_mode))
        return std::make_error_code(std::errc::not_supported);
    Descriptor out(create(target.c_str(), about));
    if (!out.isOpen() || ::fchmod(out.get(), about.st_mode & ALLPERMS) != 0)
        return lastError();

    for (off_t left = about.st_size; left > 0;) {
        if (progress.cancelled)
            return std::make_error_code(std::errc::operation_canceled);
        const ssize_t moved = moveContent(in.get(), out.get(), std::min(left, kStep));
        if (moved == 0) // shorter by now
            break;
        if (moved > 0) {
            left -= moved;
            progress.done += static_cast<std::uint64_t>(moved);
        } else if (errno != EINTR) {
            return lastError();
        }
    }
    return out.close() ? std::error_code() : lastError();
}

} // namespace tarvik::app
