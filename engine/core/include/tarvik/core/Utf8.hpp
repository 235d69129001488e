#pragma once

#include <tarvik/core/Export.hpp>

#include <cstddef>
#include <string_view>

namespace tarvik {

// The length in bytes of the UTF-8 character that the text begins with; 0 when it begins with none.
[[nodiscard]] TARVIK_CORE_API std::size_t utf8CharacterLength(std::string_view text);

[[nodiscard]] TARVIK_CORE_API bool isUtf8(std::string_view text);

} // namespace tarvik
