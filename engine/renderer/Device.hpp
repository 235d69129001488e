#pragma once

#include "Gpu.hpp"
#include "InstanceHandle.hpp"

#include <volk.h>

#include <cstdint>
#include <string>
#include <utility>

namespace tarvik::rhi {

// The logical device with its one queue, and what everything built on it asks for.
struct Device final {
    Device(const InstanceHandle& instance, const GpuCandidate& gpu);
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;
    ~Device();

    const InstanceHandle& instance;
    VkPhysicalDevice gpu;
    std::string name;
    std::uint32_t queueFamily;
    VkDevice handle = VK_NULL_HANDLE;
    VkQueue queue = VK_NULL_HANDLE;
    VolkDeviceTable vk{};
    VkPhysicalDeviceProperties properties{};
    VkPhysicalDeviceMemoryProperties memory{};
    VkPipelineCache pipelineCache = VK_NULL_HANDLE; // set by its owner
};

// Owns one object of the device.
template <typename Handle, auto kDestroy>
class Unique final {
public:
    Unique() = default;
    Unique(const Device& device, Handle handle) : device_(&device), handle_(handle) {}
    Unique(Unique&& other) noexcept
        : device_(other.device_),
          handle_(std::exchange(other.handle_, Handle{VK_NULL_HANDLE})) {}
    Unique& operator=(Unique&& other) noexcept {
        std::swap(device_, other.device_);
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Unique() {
        if (handle_ != VK_NULL_HANDLE)
            (device_->vk.*kDestroy)(device_->handle, handle_, nullptr);
    }
    [[nodiscard]] Handle get() const { return handle_; }
    explicit operator bool() const { return handle_ != VK_NULL_HANDLE; }

private:
    const Device* device_ = nullptr;
    Handle handle_ = VK_NULL_HANDLE;
};

using UniqueBuffer = Unique<VkBuffer, &VolkDeviceTable::vkDestroyBuffer>;
using UniqueCommandPool = Unique<VkCommandPool, &VolkDeviceTable::vkDestroyCommandPool>;
using UniqueDescriptorPool = Unique<VkDescriptorPool, &VolkDeviceTable::vkDestroyDescriptorPool>;
using UniqueDescriptorSetLayout =
    Unique<VkDescriptorSetLayout, &VolkDeviceTable::vkDestroyDescriptorSetLayout>;
using UniqueFence = Unique<VkFence, &VolkDeviceTable::vkDestroyFence>;
using UniqueImage = Unique<VkImage, &VolkDeviceTable::vkDestroyImage>;
using UniqueImageView = Unique<VkImageView, &VolkDeviceTable::vkDestroyImageView>;
using UniqueMemory = Unique<VkDeviceMemory, &VolkDeviceTable::vkFreeMemory>;
using UniquePipeline = Unique<VkPipeline, &VolkDeviceTable::vkDestroyPipeline>;
using UniquePipelineCache = Unique<VkPipelineCache, &VolkDeviceTable::vkDestroyPipelineCache>;
using UniquePipelineLayout = Unique<VkPipelineLayout, &VolkDeviceTable::vkDestroyPipelineLayout>;
using UniqueSemaphore = Unique<VkSemaphore, &VolkDeviceTable::vkDestroySemaphore>;
using UniqueShaderModule = Unique<VkShaderModule, &VolkDeviceTable::vkDestroyShaderModule>;
using UniqueSwapchain = Unique<VkSwapchainKHR, &VolkDeviceTable::vkDestroySwapchainKHR>;

[[nodiscard]] UniqueSemaphore makeSemaphore(const Device& device);
[[nodiscard]] UniqueFence makeFence(const Device& device);

// A pool with its one command buffer, recorded anew for every use.
struct CommandBuffer final {
    explicit CommandBuffer(const Device& device);
    // Recording that was broken off is forgotten. Not to be called while the GPU still executes it.
    void begin(const Device& device) const;
    UniqueCommandPool pool;
    VkCommandBuffer handle = VK_NULL_HANDLE;
};

} // namespace tarvik::rhi
