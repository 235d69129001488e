#pragma once

#include "InstanceStream.hpp"
#include "Memory.hpp"

#include <tarvik/scene/CameraView.hpp>

namespace tarvik::render {

// What the GPU reads of one frame: camera, lights and instances, in one buffer that grows and never shrinks.
// Must not be written while the GPU still reads it.
class FrameStream final {
public:
    explicit FrameStream(const rhi::Device& device) : device_(device) {}

    void write(const Scene& scene, const CameraView& view);

    [[nodiscard]] VkBuffer buffer() const { return buffer_.get(); }
    [[nodiscard]] VkDeviceAddress frameAddress() const { return buffer_.address(); }
    [[nodiscard]] static VkDeviceSize instanceOffset();
    [[nodiscard]] const InstanceRanges& ranges() const { return ranges_; }

private:
    const rhi::Device& device_;
    rhi::Buffer buffer_;
    InstanceRanges ranges_;
};

} // namespace tarvik::render
