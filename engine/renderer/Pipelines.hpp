#pragma once

#include "Device.hpp"
#include "Shaders.hpp"

#include <vector>

namespace tarvik::render {

inline constexpr VkFormat kDepthFormat = VK_FORMAT_D32_SFLOAT;
inline constexpr VkSampleCountFlagBits kSamples = VK_SAMPLE_COUNT_4_BIT; // every device has it

[[nodiscard]] bool encodesSrgb(VkFormat format);

// The pipelines of every colour format that was drawn to, compiled when they are first needed.
class Pipelines final {
public:
    Pipelines(const rhi::Device& device, const ShaderSource& shaders);

    struct Set {
        VkFormat format = VK_FORMAT_UNDEFINED;
        rhi::UniquePipeline mesh;
        rhi::UniquePipeline sky;
        rhi::UniquePipeline grid;
    };
    [[nodiscard]] const Set& forFormat(VkFormat format);
    [[nodiscard]] VkPipelineLayout layout() const { return layout_.get(); }

private:
    const rhi::Device& device_;
    const ShaderSource& shaders_;
    rhi::UniqueDescriptorSetLayout frameLayout_;
    rhi::UniquePipelineLayout layout_;
    std::vector<Set> sets_;
};

} // namespace tarvik::render
