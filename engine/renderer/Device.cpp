#include "Device.hpp"

#include "Result.hpp"

namespace tarvik::rhi {

Device::Device(const InstanceHandle& owner, const GpuCandidate& candidate)
    : instance(owner),
      gpu(candidate.handle),
      name(candidate.name),
      queueFamily(candidate.queueFamily) {
    vkGetPhysicalDeviceProperties(gpu, &properties);
    vkGetPhysicalDeviceMemoryProperties(gpu, &memory);

    const float priority = 1.0F;
    const VkDeviceQueueCreateInfo queueInfo{.sType = VK_STRUCTURE_TYPE_DEVICE_QUEUE_CREATE_INFO,
                                            .queueFamilyIndex = queueFamily,
                                            .queueCount = 1,
                                            .pQueuePriorities = &priority};
    const VkPhysicalDeviceVulkan13Features features{.sType =
                                                        VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_FEATURES,
                                                    .synchronization2 = VK_TRUE,
                                                    .dynamicRendering = VK_TRUE};
    const char* const extension = VK_KHR_SWAPCHAIN_EXTENSION_NAME;
    const VkDeviceCreateInfo info{.sType = VK_STRUCTURE_TYPE_DEVICE_CREATE_INFO,
                                  .pNext = &features,
                                  .queueCreateInfoCount = 1,
                                  .pQueueCreateInfos = &queueInfo,
                                  .enabledExtensionCount = instance.hasSurfaces() ? 1U : 0U,
                                  .ppEnabledExtensionNames = &extension};
    check(vkCreateDevice(gpu, &info, nullptr, &handle), "creating the device on " + name);
    volkLoadDeviceTable(&vk, handle);
    vk.vkGetDeviceQueue(handle, queueFamily, 0, &queue);
}

Device::~Device() {
    vk.vkDestroyDevice(handle, nullptr);
}

UniqueSemaphore makeSemaphore(const Device& device) {
    const VkSemaphoreCreateInfo info{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_CREATE_INFO};
    VkSemaphore semaphore = VK_NULL_HANDLE;
    check(device.vk.vkCreateSemaphore(device.handle, &info, nullptr, &semaphore), "creating a semaphore");
    return {device, semaphore};
}

UniqueFence makeFence(const Device& device) {
    const VkFenceCreateInfo info{.sType = VK_STRUCTURE_TYPE_FENCE_CREATE_INFO};
    VkFence fence = VK_NULL_HANDLE;
    check(device.vk.vkCreateFence(device.handle, &info, nullptr, &fence), "creating a fence");
    return {device, fence};
}

CommandBuffer::CommandBuffer(const Device& device) {
    const VkCommandPoolCreateInfo poolInfo{.sType = VK_STRUCTURE_TYPE_COMMAND_POOL_CREATE_INFO,
                                           .queueFamilyIndex = device.queueFamily};
    VkCommandPool created = VK_NULL_HANDLE;
    check(device.vk.vkCreateCommandPool(device.handle, &poolInfo, nullptr, &created),
          "creating a command pool");
    pool = {device, created};
    const VkCommandBufferAllocateInfo info{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_ALLOCATE_INFO,
                                           .commandPool = created,
                                           .level = VK_COMMAND_BUFFER_LEVEL_PRIMARY,
                                           .commandBufferCount = 1};
    check(device.vk.vkAllocateCommandBuffers(device.handle, &info, &handle), "allocating a command buffer");
}

void CommandBuffer::begin(const Device& device) const {
    check(device.vk.vkResetCommandPool(device.handle, pool.get(), 0), "resetting a command pool");
    const VkCommandBufferBeginInfo info{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_BEGIN_INFO,
                                        .flags = VK_COMMAND_BUFFER_USAGE_ONE_TIME_SUBMIT_BIT};
    check(device.vk.vkBeginCommandBuffer(handle, &info), "beginning to record");
}

} // namespace tarvik::rhi
