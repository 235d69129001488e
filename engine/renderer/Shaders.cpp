#include "Shaders.hpp"

#include <tarvik/core/File.hpp>
#include <tarvik/core/Paths.hpp>
#include <tarvik/renderer/Errors.hpp>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <system_error>
#include <utility>

namespace tarvik::render {

namespace {

constexpr std::uint32_t kGridFragment[] = {
#include "grid.frag.inc"
};
constexpr std::uint32_t kGridVertex[] = {
#include "grid.vert.inc"
};
constexpr std::uint32_t kMeshFragment[] = {
#include "mesh.frag.inc"
};
constexpr std::uint32_t kMeshVertex[] = {
#include "mesh.vert.inc"
};
constexpr std::uint32_t kSkyFragment[] = {
#include "sky.frag.inc"
};
constexpr std::uint32_t kSkyVertex[] = {
#include "sky.vert.inc"
};

constexpr std::array<std::pair<std::string_view, std::span<const std::uint32_t>>, 6> kBuiltIn{
    {{"grid.frag", kGridFragment},
     {"grid.vert", kGridVertex},
     {"mesh.frag", kMeshFragment},
     {"mesh.vert", kMeshVertex},
     {"sky.frag", kSkyFragment},
     {"sky.vert", kSkyVertex}}};

constexpr std::uint32_t kSpirvMagic = 0x07230203;
constexpr std::uint64_t kMaxBytes = 16U << 20U;

std::vector<std::uint32_t> readSpirv(const std::filesystem::path& file) {
    const auto content = readFile(file, kMaxBytes);
    if (!content)
        throw rhi::VulkanError(content.error().message, VK_ERROR_INITIALIZATION_FAILED);
    std::vector<std::uint32_t> words(content->size() / sizeof(std::uint32_t));
    std::memcpy(words.data(), content->data(), words.size() * sizeof(std::uint32_t));
    if (content->size() % sizeof(std::uint32_t) != 0 || words.empty() || words.front() != kSpirvMagic)
        throw rhi::VulkanError(fmt::format("{} is not a SPIR-V shader", paths::toUtf8(file)),
                               VK_ERROR_INITIALIZATION_FAILED);
    return words;
}

} // namespace

std::vector<std::uint32_t> ShaderSource::load(std::string_view name) const {
    if (!directory_.empty()) {
        const std::filesystem::path file = directory_ / fmt::format("{}.spv", name);
        std::error_code ignored;
        if (std::filesystem::exists(file, ignored))
            return readSpirv(file);
    }
    const auto found = std::ranges::find(kBuiltIn, name, [](const auto& shader) { return shader.first; });
    if (found == kBuiltIn.end())
        throw rhi::VulkanError(fmt::format("there is no shader {}", name), VK_ERROR_INITIALIZATION_FAILED);
    return {found->second.begin(), found->second.end()};
}

} // namespace tarvik::render
