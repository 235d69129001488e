#pragma once

#include "InstanceStream.hpp"
#include "Memory.hpp"

#include <tarvik/renderer/Renderer.hpp>
#include <tarvik/scene/CameraView.hpp>

namespace tarvik::render {

// Layouts made alike can stand in for each other, so the pipelines and every stream have their own.
[[nodiscard]] rhi::UniqueDescriptorSetLayout makeFrameSetLayout(const rhi::Device& device);

// What the GPU reads of one frame: camera, lights and instances, in one buffer that grows and never shrinks.
// Must not be written while the GPU still reads it.
class FrameStream final {
public:
    explicit FrameStream(const rhi::Device& device);

    void write(const Scene& scene, const CameraView& view, const RenderSettings& settings);

    [[nodiscard]] VkBuffer buffer() const { return buffer_.get(); }
    [[nodiscard]] VkDescriptorSet frameSet() const { return set_; }
    [[nodiscard]] static VkDeviceSize instanceOffset();
    [[nodiscard]] const InstanceRanges& ranges() const { return ranges_; }

private:
    void grow(VkDeviceSize size);

    const rhi::Device& device_;
    rhi::UniqueDescriptorSetLayout layout_;
    rhi::UniqueDescriptorPool pool_;
    VkDescriptorSet set_ = VK_NULL_HANDLE;
    rhi::Buffer buffer_;
    InstanceRanges ranges_;
};

} // namespace tarvik::render
