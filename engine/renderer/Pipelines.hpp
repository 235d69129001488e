#pragma once

#include "Device.hpp"
#include "Shaders.hpp"

#include <vector>

namespace tarvik::render {

[[nodiscard]] bool encodesSrgb(VkFormat format);

// What pipelines depend on.
struct PictureFormat {
    VkFormat colour = VK_FORMAT_UNDEFINED;
    VkSampleCountFlagBits samples = VK_SAMPLE_COUNT_1_BIT;
    bool operator==(const PictureFormat&) const = default;
};

// The pipelines of every format that was drawn to, compiled when they are first needed.
class Pipelines final {
public:
    Pipelines(const rhi::Device& device, const ShaderSource& shaders);

    struct Set {
        PictureFormat format;
        rhi::UniquePipeline mesh;
        rhi::UniquePipeline sky;
        rhi::UniquePipeline grid;
    };
    [[nodiscard]] const Set& forFormat(PictureFormat format);
    [[nodiscard]] VkPipelineLayout layout() const { return layout_.get(); }

private:
    const rhi::Device& device_;
    const ShaderSource& shaders_;
    rhi::UniqueDescriptorSetLayout frameLayout_;
    rhi::UniquePipelineLayout layout_;
    std::vector<Set> sets_;
};

} // namespace tarvik::render
