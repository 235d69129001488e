#include <tarvik/renderer/Instance.hpp>

#include "Gpu.hpp"
#include "InstanceHandle.hpp"
#include "Platform.hpp"
#include "Result.hpp"

#include <tarvik/core/Log.hpp>
#include <tarvik/renderer/Errors.hpp>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstring>

namespace tarvik::rhi {

namespace {

constexpr const char* kValidationLayer = "VK_LAYER_KHRONOS_validation";

VKAPI_ATTR VkBool32 VKAPI_CALL logMessage(VkDebugUtilsMessageSeverityFlagBitsEXT severity,
                                          VkDebugUtilsMessageTypeFlagsEXT /*types*/,
                                          const VkDebugUtilsMessengerCallbackDataEXT* data,
                                          void* /*user*/) noexcept {
    const auto level = severity >= VK_DEBUG_UTILS_MESSAGE_SEVERITY_ERROR_BIT_EXT     ? LogLevel::Error
                       : severity >= VK_DEBUG_UTILS_MESSAGE_SEVERITY_WARNING_BIT_EXT ? LogLevel::Warn
                                                                                     : LogLevel::Debug;
    try {
        log::write(level, "Renderer", "validation: {}", data->pMessage != nullptr ? data->pMessage : "");
    } catch (...) { // out of memory: the driver that calls cannot be told
    }
    return VK_FALSE;
}

VkDebugUtilsMessengerCreateInfoEXT messengerInfo() {
    return {.sType = VK_STRUCTURE_TYPE_DEBUG_UTILS_MESSENGER_CREATE_INFO_EXT,
            .messageSeverity = VK_DEBUG_UTILS_MESSAGE_SEVERITY_VERBOSE_BIT_EXT |
                               VK_DEBUG_UTILS_MESSAGE_SEVERITY_INFO_BIT_EXT |
                               VK_DEBUG_UTILS_MESSAGE_SEVERITY_WARNING_BIT_EXT |
                               VK_DEBUG_UTILS_MESSAGE_SEVERITY_ERROR_BIT_EXT,
            .messageType = VK_DEBUG_UTILS_MESSAGE_TYPE_GENERAL_BIT_EXT |
                           VK_DEBUG_UTILS_MESSAGE_TYPE_VALIDATION_BIT_EXT |
                           VK_DEBUG_UTILS_MESSAGE_TYPE_PERFORMANCE_BIT_EXT,
            .pfnUserCallback = logMessage};
}

// Asks with room for all that is usual: every question makes the loader look at all drivers.
std::vector<VkExtensionProperties> extensionsOf(const char* layer) {
    std::vector<VkExtensionProperties> extensions(64);
    auto count = static_cast<std::uint32_t>(extensions.size());
    VkResult result = vkEnumerateInstanceExtensionProperties(layer, &count, extensions.data());
    while (result == VK_INCOMPLETE) {
        extensions.resize(2 * extensions.size());
        count = static_cast<std::uint32_t>(extensions.size());
        result = vkEnumerateInstanceExtensionProperties(layer, &count, extensions.data());
    }
    check(result, "listing Vulkan extensions");
    extensions.resize(count);
    return extensions;
}

bool contains(std::span<const VkExtensionProperties> extensions, std::string_view name) {
    return std::ranges::any_of(extensions,
                               [&](const auto& extension) { return name == extension.extensionName; });
}

bool validationInstalled() {
    std::uint32_t count = 0;
    check(vkEnumerateInstanceLayerProperties(&count, nullptr), "listing Vulkan layers");
    std::vector<VkLayerProperties> layers(count);
    vkEnumerateInstanceLayerProperties(&count, layers.data());
    layers.resize(count);
    return std::ranges::any_of(
               layers,
               [](const auto& layer) { return std::strcmp(layer.layerName, kValidationLayer) == 0; }) &&
           contains(extensionsOf(kValidationLayer), VK_EXT_DEBUG_UTILS_EXTENSION_NAME);
}

[[noreturn]] void throwNoDriver() {
    throw UnsupportedHardwareError("no Vulkan driver is installed. " + driverAdvice());
}

} // namespace

void loadVulkan() {
    if (volkGetInstanceVersion() == 0 && volkInitialize() != VK_SUCCESS)
        throw UnsupportedHardwareError("the Vulkan loader is not installed. " + loaderAdvice());
    if (volkGetInstanceVersion() < VK_API_VERSION_1_1)
        throw UnsupportedHardwareError(
            "the installed Vulkan loader is too old: version 1.1 or newer is needed. " + loaderAdvice());
}

// Delegates, so that what throws once there is an instance runs the destructor.
InstanceHandle::InstanceHandle(std::span<const std::string> extensions, Validation validation)
    : InstanceHandle() {
    loadVulkan();
    std::vector<const char*> names;
    names.reserve(extensions.size() + 1);
    for (const std::string& extension : extensions)
        names.push_back(extension.c_str());
    hasWayland_ = std::ranges::find(extensions, "VK_KHR_wayland_surface") != extensions.end();

    const bool validate = validation == Validation::On && validationInstalled();
    if (validate && std::ranges::find(extensions, VK_EXT_DEBUG_UTILS_EXTENSION_NAME) == extensions.end())
        names.push_back(VK_EXT_DEBUG_UTILS_EXTENSION_NAME);
    else if (validation == Validation::On && !validate)
        log::warn("Renderer", "validation was asked for, but {} is not installed: {}", kValidationLayer,
                  validationAdvice());

    const VkApplicationInfo application{.sType = VK_STRUCTURE_TYPE_APPLICATION_INFO,
                                        .pApplicationName = "Tarvik",
                                        .pEngineName = "Tarvik",
                                        .apiVersion = VK_API_VERSION_1_3};
    const VkDebugUtilsMessengerCreateInfoEXT messenger = messengerInfo();
    const VkInstanceCreateInfo info{.sType = VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO,
                                    .pNext = validate ? &messenger : nullptr,
                                    .pApplicationInfo = &application,
                                    .enabledLayerCount = validate ? 1U : 0U,
                                    .ppEnabledLayerNames = &kValidationLayer,
                                    .enabledExtensionCount = static_cast<std::uint32_t>(names.size()),
                                    .ppEnabledExtensionNames = names.data()};
    const VkResult result = vkCreateInstance(&info, nullptr, &instance_);
    if (result == VK_ERROR_INCOMPATIBLE_DRIVER)
        throwNoDriver();
    check(result, fmt::format("creating the Vulkan instance with {}", fmt::join(names, ", ")));
    volkLoadInstanceOnly(instance_);

    surface_ = {
        load<PFN_vkGetPhysicalDeviceSurfaceSupportKHR>("vkGetPhysicalDeviceSurfaceSupportKHR"),
        load<PFN_vkGetPhysicalDeviceSurfaceCapabilitiesKHR>("vkGetPhysicalDeviceSurfaceCapabilitiesKHR"),
        load<PFN_vkGetPhysicalDeviceSurfaceFormatsKHR>("vkGetPhysicalDeviceSurfaceFormatsKHR"),
        load<PFN_vkGetPhysicalDeviceSurfacePresentModesKHR>("vkGetPhysicalDeviceSurfacePresentModesKHR")};
    if (validate) {
        const auto create = load<PFN_vkCreateDebugUtilsMessengerEXT>("vkCreateDebugUtilsMessengerEXT");
        if (create != nullptr && create(instance_, &messenger, nullptr, &messenger_) != VK_SUCCESS)
            log::warn("Renderer", "validation messages cannot be shown: no messenger could be created");
    }
}

InstanceHandle::~InstanceHandle() {
    if (messenger_ != VK_NULL_HANDLE)
        load<PFN_vkDestroyDebugUtilsMessengerEXT>("vkDestroyDebugUtilsMessengerEXT")(instance_, messenger_,
                                                                                     nullptr);
    if (instance_ != VK_NULL_HANDLE)
        load<PFN_vkDestroyInstance>("vkDestroyInstance")(instance_, nullptr);
}

template <typename Function>
Function InstanceHandle::load(const char* name) const {
    return reinterpret_cast<Function>(vkGetInstanceProcAddr(instance_, name));
}

std::vector<std::string> Instance::availableExtensions() {
    loadVulkan();
    const auto extensions = extensionsOf(nullptr);
    // Surfaces are the drivers' business: without the extension there may be no driver at all, which only the
    // making of an instance tells.
    if (!contains(extensions, VK_KHR_SURFACE_EXTENSION_NAME))
        const InstanceHandle probe({}, Validation::Off);
    std::vector<std::string> names;
    names.reserve(extensions.size());
    for (const auto& extension : extensions)
        names.emplace_back(extension.extensionName);
    return names;
}

std::vector<Gpu> Instance::availableGpus() {
    const InstanceHandle instance({}, Validation::Off);
    std::vector<Gpu> gpus;
    for (const GpuCandidate& candidate : findGpus(instance.get()))
        gpus.push_back({candidate.index, candidate.name, std::string(kindName(candidate.type))});
    return gpus;
}

} // namespace tarvik::rhi
