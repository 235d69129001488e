#include "SwapchainImpl.hpp"

#include "Memory.hpp"

#include <tarvik/renderer/Errors.hpp>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <limits>

namespace tarvik::rhi {

namespace {

constexpr std::uint32_t kClientChooses = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint32_t kWantedImages = 3;

VkSurfaceFormatKHR chooseFormat(std::span<const VkSurfaceFormatKHR> offered) {
    for (const VkFormat wanted : {VK_FORMAT_B8G8R8A8_SRGB, VK_FORMAT_R8G8B8A8_SRGB, VK_FORMAT_B8G8R8A8_UNORM,
                                  VK_FORMAT_R8G8B8A8_UNORM}) {
        const auto found = std::ranges::find_if(offered, [&](const VkSurfaceFormatKHR& format) {
            return format.format == wanted && format.colorSpace == VK_COLOR_SPACE_SRGB_NONLINEAR_KHR;
        });
        if (found != offered.end())
            return *found;
    }
    return offered.front();
}

VkExtent2D chooseExtent(const VkSurfaceCapabilitiesKHR& capabilities, VkExtent2D wanted) {
    if (capabilities.currentExtent.width != kClientChooses)
        return capabilities.currentExtent;
    const auto clamped = [](std::uint32_t value, std::uint32_t least, std::uint32_t most) {
        return std::min(std::max(value, least), most);
    };
    return {clamped(wanted.width, capabilities.minImageExtent.width, capabilities.maxImageExtent.width),
            clamped(wanted.height, capabilities.minImageExtent.height, capabilities.maxImageExtent.height)};
}

VkCompositeAlphaFlagBitsKHR chooseAlpha(VkCompositeAlphaFlagsKHR offered) {
    for (const auto wanted : {VK_COMPOSITE_ALPHA_OPAQUE_BIT_KHR, VK_COMPOSITE_ALPHA_INHERIT_BIT_KHR,
                              VK_COMPOSITE_ALPHA_PRE_MULTIPLIED_BIT_KHR})
        if ((offered & wanted) != 0)
            return wanted;
    return VK_COMPOSITE_ALPHA_POST_MULTIPLIED_BIT_KHR;
}

// Upright pictures, which the window system turns where the display is turned.
VkSurfaceTransformFlagBitsKHR chooseTransform(const VkSurfaceCapabilitiesKHR& capabilities) {
    return (capabilities.supportedTransforms & VK_SURFACE_TRANSFORM_IDENTITY_BIT_KHR) != 0
               ? VK_SURFACE_TRANSFORM_IDENTITY_BIT_KHR
               : capabilities.currentTransform;
}

bool isEmpty(VkExtent2D extent) {
    return extent.width == 0 || extent.height == 0;
}

bool sameExtent(VkExtent2D a, VkExtent2D b) {
    return a.width == b.width && a.height == b.height;
}

// The list that a two-call Vulkan query fills.
template <typename Item, typename Query>
std::vector<Item> listOf(Query query, std::string_view operation) {
    std::uint32_t count = 0;
    check(query(&count, nullptr), operation);
    std::vector<Item> items(count);
    const VkResult result = query(&count, items.data());
    check(result == VK_INCOMPLETE ? VK_SUCCESS : result, operation);
    items.resize(count);
    return items;
}

} // namespace

VkPresentModeKHR choosePresentMode(PresentPolicy policy, WindowSystem system,
                                   std::span<const VkPresentModeKHR> offered) {
    // FIFO shows every frame at a refresh of the display. On Wayland it may hold the caller inside present
    // for as long as the window is not shown; MAILBOX never waits, and does not tear either.
    std::array wanted{VK_PRESENT_MODE_MAILBOX_KHR, VK_PRESENT_MODE_IMMEDIATE_KHR};
    std::size_t count = wanted.size();
    if (policy == PresentPolicy::Vsync)
        count = system == WindowSystem::Wayland ? 1 : 0;
    for (const VkPresentModeKHR mode : std::span(wanted).first(count))
        if (std::ranges::find(offered, mode) != offered.end())
            return mode;
    return VK_PRESENT_MODE_FIFO_KHR; // always there
}

Swapchain::Impl::Impl(const Device& device, VkSurfaceKHR surface) : device_(device), surface_(surface) {
    if (!device.instance.hasSurfaces())
        throw VulkanError("the Vulkan instance was made without VK_KHR_surface; it cannot present to windows",
                          VK_ERROR_EXTENSION_NOT_PRESENT);
    const auto& functions = device.instance.surface();
    VkBool32 supported = VK_FALSE;
    check(functions.support(device.gpu, device.queueFamily, surface, &supported),
          "asking whether the GPU can present to the window");
    if (supported == VK_FALSE)
        throw VulkanError(
            fmt::format("{} cannot present to this window; choose another GPU with --gpu", device.name),
            VK_ERROR_FEATURE_NOT_PRESENT);

    const auto formats = listOf<VkSurfaceFormatKHR>(
        [&](std::uint32_t* count, VkSurfaceFormatKHR* items) {
            return functions.formats(device.gpu, surface, count, items);
        },
        "listing the window's formats");
    if (formats.empty())
        throw VulkanError(fmt::format("{} offers no colour format for this window", device.name),
                          VK_ERROR_FORMAT_NOT_SUPPORTED);
    format_ = chooseFormat(formats);
    presentModes_ = listOf<VkPresentModeKHR>(
        [&](std::uint32_t* count, VkPresentModeKHR* items) {
            return functions.presentModes(device.gpu, surface, count, items);
        },
        "listing the window's present modes");
}

ImageOutcome Swapchain::Impl::remake(VkExtent2D wanted, PresentPolicy policy) {
    VkSurfaceCapabilitiesKHR capabilities;
    const ImageOutcome queried =
        imageOutcome(device_.instance.surface().capabilities(device_.gpu, surface_, &capabilities),
                     "asking for the window's size");
    images_.clear();
    if (queried != ImageOutcome::Ready) {
        swapchain_ = {};
        return queried;
    }

    extent_ = chooseExtent(capabilities, wanted);
    if (isEmpty(extent_)) {
        swapchain_ = {};
        return ImageOutcome::NotReady;
    }
    // Of the window systems that are used here, only Wayland leaves a window's size to the client. Which
    // modes it offers tells less: IMMEDIATE is there or not as the compositor pleases.
    const auto system = device_.instance.hasWayland() && capabilities.currentExtent.width == kClientChooses
                            ? WindowSystem::Wayland
                            : WindowSystem::Other;
    presentMode_ = choosePresentMode(policy, system, presentModes_);

    const UniqueSwapchain old = std::exchange(swapchain_, {});
    VkSwapchainKHR created = VK_NULL_HANDLE;
    const std::uint32_t most = capabilities.maxImageCount == 0 ? kClientChooses : capabilities.maxImageCount;
    const VkSwapchainCreateInfoKHR info{
        .sType = VK_STRUCTURE_TYPE_SWAPCHAIN_CREATE_INFO_KHR,
        .surface = surface_,
        .minImageCount = std::min(std::max(capabilities.minImageCount + 1, kWantedImages), most),
        .imageFormat = format_.format,
        .imageColorSpace = format_.colorSpace,
        .imageExtent = extent_,
        .imageArrayLayers = 1,
        .imageUsage = VK_IMAGE_USAGE_COLOR_ATTACHMENT_BIT,
        .imageSharingMode = VK_SHARING_MODE_EXCLUSIVE,
        .preTransform = chooseTransform(capabilities),
        .compositeAlpha = chooseAlpha(capabilities.supportedCompositeAlpha),
        .presentMode = presentMode_,
        .clipped = VK_TRUE,
        .oldSwapchain = old.get()};
    const ImageOutcome outcome =
        imageOutcome(device_.vk.vkCreateSwapchainKHR(device_.handle, &info, nullptr, &created),
                     fmt::format("creating a swapchain of {} x {}", extent_.width, extent_.height));
    if (outcome != ImageOutcome::Ready)
        return outcome;
    swapchain_ = {device_, created};
    try {
        takeImages();
    } catch (...) {
        images_.clear();
        swapchain_ = {};
        throw;
    }
    return ImageOutcome::Ready;
}

void Swapchain::Impl::takeImages() {
    const auto images = listOf<VkImage>(
        [&](std::uint32_t* count, VkImage* items) {
            return device_.vk.vkGetSwapchainImagesKHR(device_.handle, swapchain_.get(), count, items);
        },
        "listing the swapchain's images");
    images_.reserve(images.size());
    for (const VkImage image : images)
        images_.push_back({image, makeImageView(device_, image, format_.format), makeSemaphore(device_)});
}

bool Swapchain::Impl::fits(VkExtent2D wanted) const {
    VkSurfaceCapabilitiesKHR capabilities;
    const ImageOutcome outcome =
        imageOutcome(device_.instance.surface().capabilities(device_.gpu, surface_, &capabilities),
                     "asking for the window's size");
    return outcome == ImageOutcome::Ready && sameExtent(chooseExtent(capabilities, wanted), extent_);
}

ImageOutcome Swapchain::Impl::acquire(VkSemaphore acquired, std::chrono::nanoseconds timeout) {
    return imageOutcome(device_.vk.vkAcquireNextImageKHR(device_.handle, swapchain_.get(),
                                                         static_cast<std::uint64_t>(timeout.count()),
                                                         acquired, VK_NULL_HANDLE, &current_),
                        "acquiring a swapchain image");
}

ImageOutcome Swapchain::Impl::present() {
    const VkSemaphore finished = currentImage().finished.get();
    const VkSwapchainKHR swapchain = swapchain_.get();
    const VkPresentInfoKHR info{.sType = VK_STRUCTURE_TYPE_PRESENT_INFO_KHR,
                                .waitSemaphoreCount = 1,
                                .pWaitSemaphores = &finished,
                                .swapchainCount = 1,
                                .pSwapchains = &swapchain,
                                .pImageIndices = &current_};
    return imageOutcome(device_.vk.vkQueuePresentKHR(device_.queue, &info), "presenting");
}

Swapchain::Swapchain(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

Swapchain::~Swapchain() = default;

bool Swapchain::presentBlocks() const {
    return impl_->exists() && (impl_->presentMode() == VK_PRESENT_MODE_FIFO_KHR ||
                               impl_->presentMode() == VK_PRESENT_MODE_FIFO_RELAXED_KHR);
}

} // namespace tarvik::rhi
