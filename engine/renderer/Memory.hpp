#pragma once

#include "Device.hpp"

#include <cstddef>
#include <cstdint>

namespace tarvik::rhi {

enum class BufferUse : std::uint8_t {
    Upload,   // written in order by the CPU, read as uniforms, vertices and indices
    Readback, // filled by the GPU, read by the CPU
};

// A buffer with memory of its own, mapped for as long as it lives.
class Buffer final {
public:
    Buffer() = default;
    Buffer(const Device& device, VkDeviceSize size, BufferUse use);

    [[nodiscard]] VkBuffer get() const { return buffer_.get(); }
    [[nodiscard]] VkDeviceSize size() const { return size_; }
    [[nodiscard]] std::byte* data() const { return data_; }

private:
    UniqueMemory memory_;
    UniqueBuffer buffer_;
    VkDeviceSize size_ = 0;
    std::byte* data_ = nullptr;
};

struct ImageInfo {
    VkExtent2D extent{};
    VkFormat format = VK_FORMAT_UNDEFINED;
    VkSampleCountFlagBits samples = VK_SAMPLE_COUNT_1_BIT;
    VkImageUsageFlags usage = 0;
};

[[nodiscard]] UniqueImageView makeImageView(const Device& device, VkImage image, VkFormat format);

// A two-dimensional image with memory of its own. Needs no memory at all on a tiling GPU when the usage says
// that its content is transient.
class Image final {
public:
    Image() = default;
    Image(const Device& device, const ImageInfo& info);

    [[nodiscard]] VkImage get() const { return image_.get(); }
    [[nodiscard]] VkImageView view() const { return view_.get(); }

private:
    UniqueMemory memory_;
    UniqueImage image_;
    UniqueImageView view_;
};

} // namespace tarvik::rhi
