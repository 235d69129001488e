#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

namespace tarvik::render {

// SPIR-V by the name of its source, such as "mesh.vert": built into the library, or "<name>.spv" of a folder
// where that has it.
class ShaderSource final {
public:
    explicit ShaderSource(std::filesystem::path directory) : directory_(std::move(directory)) {}

    // Throws VulkanError, naming the file, when a file of the folder is not SPIR-V.
    [[nodiscard]] std::vector<std::uint32_t> load(std::string_view name) const;

private:
    std::filesystem::path directory_; // empty: none
};

} // namespace tarvik::render
