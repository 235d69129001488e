#include "Memory.hpp"

#include "Result.hpp"

#include <initializer_list>

namespace tarvik::rhi {

namespace {

constexpr VkMemoryPropertyFlags kMapped =
    VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT | VK_MEMORY_PROPERTY_HOST_COHERENT_BIT;

// Needs a feature that is not enabled.
constexpr VkMemoryPropertyFlags kNotOurs =
    VK_MEMORY_PROPERTY_PROTECTED_BIT | VK_MEMORY_PROPERTY_DEVICE_COHERENT_BIT_AMD;

// Tries the kinds of memory in the order of preference; a small heap that is full is no reason to fail.
UniqueMemory allocate(const Device& device, const VkMemoryRequirements& needs,
                      std::initializer_list<VkMemoryPropertyFlags> preferences) {
    VkResult result = VK_ERROR_OUT_OF_DEVICE_MEMORY;
    for (const VkMemoryPropertyFlags preference : preferences) {
        for (std::uint32_t type = 0; type < device.memory.memoryTypeCount; ++type) {
            const auto& candidate = device.memory.memoryTypes[type];
            if ((needs.memoryTypeBits & (1U << type)) == 0 || (candidate.propertyFlags & kNotOurs) != 0 ||
                (candidate.propertyFlags & preference) != preference ||
                device.memory.memoryHeaps[candidate.heapIndex].size < needs.size)
                continue;
            const VkMemoryAllocateInfo info{.sType = VK_STRUCTURE_TYPE_MEMORY_ALLOCATE_INFO,
                                            .allocationSize = needs.size,
                                            .memoryTypeIndex = type};
            VkDeviceMemory memory = VK_NULL_HANDLE;
            result = device.vk.vkAllocateMemory(device.handle, &info, nullptr, &memory);
            if (result == VK_SUCCESS)
                return {device, memory};
            if (!isOutOfMemory(result))
                check(result, "allocating memory");
        }
    }
    check(result, "allocating memory");
    return {};
}

} // namespace

Buffer::Buffer(const Device& device, VkDeviceSize size, BufferUse use) : size_(size) {
    const bool upload = use == BufferUse::Upload;
    const VkBufferUsageFlags usage = upload ? VK_BUFFER_USAGE_UNIFORM_BUFFER_BIT |
                                                  VK_BUFFER_USAGE_VERTEX_BUFFER_BIT |
                                                  VK_BUFFER_USAGE_INDEX_BUFFER_BIT
                                            : VkBufferUsageFlags{VK_BUFFER_USAGE_TRANSFER_DST_BIT};
    const VkBufferCreateInfo info{
        .sType = VK_STRUCTURE_TYPE_BUFFER_CREATE_INFO, .size = size, .usage = usage};
    VkBuffer buffer = VK_NULL_HANDLE;
    check(device.vk.vkCreateBuffer(device.handle, &info, nullptr, &buffer), "creating a buffer");
    buffer_ = {device, buffer};

    VkMemoryRequirements needs;
    device.vk.vkGetBufferMemoryRequirements(device.handle, buffer, &needs);
    memory_ = upload ? allocate(device, needs, {kMapped | VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT, kMapped})
                     : allocate(device, needs, {kMapped | VK_MEMORY_PROPERTY_HOST_CACHED_BIT, kMapped});
    check(device.vk.vkBindBufferMemory(device.handle, buffer, memory_.get(), 0), "binding buffer memory");
    void* mapped = nullptr;
    check(device.vk.vkMapMemory(device.handle, memory_.get(), 0, VK_WHOLE_SIZE, 0, &mapped),
          "mapping buffer memory");
    data_ = static_cast<std::byte*>(mapped);
}

UniqueImageView makeImageView(const Device& device, VkImage image, VkFormat format) {
    const bool depth = format == kDepthFormat;
    const VkImageViewCreateInfo info{
        .sType = VK_STRUCTURE_TYPE_IMAGE_VIEW_CREATE_INFO,
        .image = image,
        .viewType = VK_IMAGE_VIEW_TYPE_2D,
        .format = format,
        .subresourceRange = {.aspectMask = static_cast<VkImageAspectFlags>(depth ? VK_IMAGE_ASPECT_DEPTH_BIT
                                                                                 : VK_IMAGE_ASPECT_COLOR_BIT),
                             .levelCount = 1,
                             .layerCount = 1}};
    VkImageView view = VK_NULL_HANDLE;
    check(device.vk.vkCreateImageView(device.handle, &info, nullptr, &view), "creating an image view");
    return {device, view};
}

Image::Image(const Device& device, const ImageInfo& wanted) {
    const VkImageCreateInfo info{.sType = VK_STRUCTURE_TYPE_IMAGE_CREATE_INFO,
                                 .imageType = VK_IMAGE_TYPE_2D,
                                 .format = wanted.format,
                                 .extent = {wanted.extent.width, wanted.extent.height, 1},
                                 .mipLevels = 1,
                                 .arrayLayers = 1,
                                 .samples = wanted.samples,
                                 .tiling = VK_IMAGE_TILING_OPTIMAL,
                                 .usage = wanted.usage};
    VkImage image = VK_NULL_HANDLE;
    check(device.vk.vkCreateImage(device.handle, &info, nullptr, &image), "creating an image");
    image_ = {device, image};

    VkMemoryRequirements needs;
    device.vk.vkGetImageMemoryRequirements(device.handle, image, &needs);
    memory_ = allocate(device, needs,
                       {VK_MEMORY_PROPERTY_LAZILY_ALLOCATED_BIT, VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT, 0});
    check(device.vk.vkBindImageMemory(device.handle, image, memory_.get(), 0), "binding image memory");
    view_ = makeImageView(device, image, wanted.format);
}

} // namespace tarvik::rhi
