#pragma once

#include "Device.hpp"
#include "Shaders.hpp"

#include <array>
#include <cstdint>
#include <vector>

namespace tarvik::render {

[[nodiscard]] bool encodesSrgb(VkFormat format);

// What pipelines depend on.
struct PictureFormat {
    VkFormat colour = VK_FORMAT_UNDEFINED;
    VkSampleCountFlagBits samples = VK_SAMPLE_COUNT_1_BIT;
    bool operator==(const PictureFormat&) const = default;
};

// The pipelines of every format that was drawn to, each compiled when it is first needed.
class Pipelines final {
public:
    enum class Kind : std::uint8_t { Mesh, Sky, Grid };
    static constexpr std::size_t kKinds = 3;

    Pipelines(const rhi::Device& device, const ShaderSource& shaders);

    [[nodiscard]] VkPipeline get(PictureFormat format, Kind kind);
    [[nodiscard]] VkPipelineLayout layout() const { return layout_.get(); }

private:
    struct Set {
        PictureFormat format;
        std::array<rhi::UniquePipeline, kKinds> pipelines;
    };

    const rhi::Device& device_;
    const ShaderSource& shaders_;
    rhi::UniqueDescriptorSetLayout frameLayout_;
    rhi::UniquePipelineLayout layout_;
    std::vector<Set> sets_;
};

} // namespace tarvik::render
