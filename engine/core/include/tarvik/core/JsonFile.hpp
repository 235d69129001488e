#pragma once

#include <tarvik/core/Error.hpp>
#include <tarvik/core/Export.hpp>

#include <nlohmann/json.hpp>

#include <expected>
#include <filesystem>
#include <string>

namespace tarvik {

// The order of the fields in the file is kept, so that a save changes only what was edited.
using Json = nlohmann::ordered_json;

// Reads a JSON object. Every failure names the file; a syntax error names line and column too. Input is
// bounded: 256 MiB, 64 levels of nesting, texts of 4 MiB, 256 fields in an object, 10 million values. Text
// that is not UTF-8 is an error.
[[nodiscard]] TARVIK_CORE_API std::expected<Json, Error> readJsonFile(const std::filesystem::path& file);

// Durable (writeFileDurably), indented by two spaces, ending in a line feed.
[[nodiscard]] TARVIK_CORE_API std::expected<void, Error> writeJsonFile(const std::filesystem::path& file,
                                                                       const Json& value);

} // namespace tarvik
