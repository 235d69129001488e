#pragma once

#include <chrono>
#include <cstdint>

namespace tarvik {

// As the files keep a time: seconds since 1970, UTC.
inline std::int64_t nowUnix() {
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

} // namespace tarvik
