#pragma once

#include "Device.hpp"
#include "Result.hpp"

#include <tarvik/renderer/Export.hpp>
#include <tarvik/renderer/Swapchain.hpp>

#include <chrono>
#include <cstdint>
#include <span>
#include <vector>

namespace tarvik::rhi {

enum class WindowSystem : std::uint8_t { Wayland, Other };

[[nodiscard]] TARVIK_RENDERER_API VkPresentModeKHR
choosePresentMode(PresentPolicy policy, WindowSystem system, std::span<const VkPresentModeKHR> offered);

struct Swapchain::Impl final {
    Impl(const Device& device, VkSurfaceKHR surface);
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    // Makes the swapchain anew; there is none unless the outcome is Ready. NotReady: the surface has no size
    // just now. May be called again, after an exception too. All that was submitted and presented must be
    // done with the images.
    [[nodiscard]] ImageOutcome remake(VkExtent2D wanted, PresentPolicy policy);
    // Whether remake() would come to the same size; false when the surface cannot say.
    [[nodiscard]] bool fits(VkExtent2D wanted) const;

    // Sets `current` when the outcome is Ready or Suboptimal; the semaphore is signalled then, and only then.
    [[nodiscard]] ImageOutcome acquire(VkSemaphore acquired, std::chrono::nanoseconds timeout);
    // Once the semaphore currentImage().finished is signalled.
    [[nodiscard]] ImageOutcome present();

    struct SwapchainImage {
        VkImage image = VK_NULL_HANDLE;
        UniqueImageView view;
        UniqueSemaphore finished; // of the image, not of the frame: presenting may still wait on it
    };
    [[nodiscard]] const SwapchainImage& currentImage() const { return images_[current_]; }
    [[nodiscard]] bool exists() const { return static_cast<bool>(swapchain_); }
    [[nodiscard]] VkExtent2D extent() const { return extent_; }
    [[nodiscard]] VkFormat format() const { return format_.format; }
    [[nodiscard]] VkPresentModeKHR presentMode() const { return presentMode_; }

private:
    void takeImages();

    const Device& device_;
    VkSurfaceKHR surface_;
    VkSurfaceFormatKHR format_{};
    std::vector<VkPresentModeKHR> presentModes_;
    UniqueSwapchain swapchain_;
    std::vector<SwapchainImage> images_;
    VkExtent2D extent_{};
    VkPresentModeKHR presentMode_ = VK_PRESENT_MODE_FIFO_KHR;
    std::uint32_t current_ = 0;
};

} // namespace tarvik::rhi
