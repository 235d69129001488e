#pragma once

#include <unistd.h>

namespace tarvik::test {

// While it lives, root is nobody: permissions hold for tests in a container, too.
class NoPrivileges final {
public:
    NoPrivileges() {
        if (old_ == 0) [[maybe_unused]]
            const int dropped = ::seteuid(65534);
    }
    NoPrivileges(const NoPrivileges&) = delete;
    NoPrivileges& operator=(const NoPrivileges&) = delete;
    ~NoPrivileges() { [[maybe_unused]] const int restored = ::seteuid(old_); }

private:
    uid_t old_ = ::geteuid();
};

} // namespace tarvik::test
