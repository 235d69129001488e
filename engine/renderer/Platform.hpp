#pragma once

#include <filesystem>
#include <string>

// What differs between operating systems.
namespace tarvik::rhi {

// Sentences for a person: what to install.
[[nodiscard]] std::string loaderAdvice();
[[nodiscard]] std::string driverAdvice();
[[nodiscard]] std::string validationAdvice();

// Where this user's data that can be made again is kept; empty when the user has no such folder.
[[nodiscard]] std::filesystem::path userCacheDirectory();

} // namespace tarvik::rhi
