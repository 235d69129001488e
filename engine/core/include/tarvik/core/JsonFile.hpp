#pragma once

#include <tarvik/core/Error.hpp>
#include <tarvik/core/Export.hpp>

#include <nlohmann/json.hpp>

#include <cstdint>
#include <expected>
#include <filesystem>
#include <string>

namespace tarvik {

// The order of the fields in the file is kept, so that a save changes only what was edited.
using Json = nlohmann::ordered_json;

// Reads a JSON object. Every failure names the file; a syntax error names line and column too. Input is
// bounded: 256 MiB or less, 64 levels of nesting, texts of 4 MiB, 256 fields in an object, 10 million values.
// Text that is not UTF-8 is an error.
[[nodiscard]] TARVIK_CORE_API std::expected<Json, Error> readJsonFile(const std::filesystem::path& file,
                                                                      std::uint64_t maxBytes = 256ULL << 20U);

// What is wrong with a value of a file that could be read.
struct JsonProblem {
    std::string reason; // empty while all is well
    std::string where;  // fields and indices that lead to the value, with slashes between them
};

// Names file, line and column, as the errors of reading do; the file alone when it has changed since.
[[nodiscard]] TARVIK_CORE_API Error errorIn(const std::filesystem::path& file, const JsonProblem& problem);

// Durable (writeFileDurably), indented by two spaces, ending in a line feed.
[[nodiscard]] TARVIK_CORE_API std::expected<void, Error> writeJsonFile(const std::filesystem::path& file,
                                                                       const Json& value);

} // namespace tarvik
