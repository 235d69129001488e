#include "CorruptFile.hpp"

#include <tarvik/core/File.hpp>
#include <tarvik/core/Paths.hpp>

#include <system_error>

namespace tarvik {

Error keepCorrupt(const std::filesystem::path& file, const Error& error) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored))
        return error;
    const auto copy = keepAside(file);
    if (copy)
        return {fmt::format("{} (a copy is kept as {})", error.message, paths::toUtf8(*copy))};
    return {fmt::format("{} (no copy could be kept: {})", error.message, copy.error().message)};
}

} // namespace tarvik
