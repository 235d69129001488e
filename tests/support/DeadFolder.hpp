#pragma once

#include "TemporaryFolder.hpp"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace tarvik::test {

// A folder of a server that never answers: a file system that nobody serves. Whoever looks into it waits,
// until it gives up.
class DeadFolder final {
public:
    DeadFolder() : server_(::open("/dev/fuse", O_RDWR | O_CLOEXEC)) {
        const std::string options =
            fmt::format("fd={},rootmode=40000,user_id={},group_id={}", server_, ::geteuid(), ::getegid());
        mounted_ =
            ::mount("dead", mountPoint_.path().c_str(), "fuse", MS_NODEV | MS_NOSUID, options.c_str()) == 0;
    }
    ~DeadFolder() {
        giveUp();
        if (mounted_)
            ::umount2(mountPoint_.path().c_str(), MNT_DETACH);
    }
    // Where mounting is not allowed there is none.
    [[nodiscard]] bool isThere() const { return mounted_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return mountPoint_ / name; }

    // All who wait get an error.
    void giveUp() {
        if (server_ >= 0)
            ::close(server_);
        server_ = -1;
    }

private:
    TemporaryFolder mountPoint_;
    int server_;
    bool mounted_ = false;
};

} // namespace tarvik::test
