#include "PipelineCache.hpp"

#include <tarvik/core/File.hpp>
#include <tarvik/core/Log.hpp>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstdint>
#include <cstring>
#include <system_error>

namespace tarvik::rhi {

namespace {

constexpr std::uint64_t kMaxBytes = 64U << 20U;

struct FileHeader {
    char magic[8];
    std::uint64_t checksum;
};
constexpr std::string_view kMagic = "TVKPIPE1";

std::uint64_t checksumOf(std::string_view data) { // FNV-1a
    std::uint64_t sum = 0xcbf29ce484222325U;
    for (const char byte : data)
        sum = (sum ^ static_cast<unsigned char>(byte)) * 0x100000001b3U;
    return sum;
}

std::filesystem::path fileFor(const Device& device, const std::filesystem::path& directory) {
    return directory /
           fmt::format("pipelines-{:02x}.bin", fmt::join(device.properties.pipelineCacheUUID, ""));
}

} // namespace

std::string_view cacheDataOf(std::string_view file, const VkPhysicalDeviceProperties& properties) {
    FileHeader header;
    VkPipelineCacheHeaderVersionOne driver;
    if (file.size() < sizeof header + sizeof driver)
        return {};
    std::memcpy(&header, file.data(), sizeof header);
    const std::string_view data = file.substr(sizeof header);
    std::memcpy(&driver, data.data(), sizeof driver);
    const bool ours = std::string_view(header.magic, sizeof header.magic) == kMagic &&
                      header.checksum == checksumOf(data) && driver.headerSize >= sizeof driver &&
                      driver.headerVersion == VK_PIPELINE_CACHE_HEADER_VERSION_ONE &&
                      driver.vendorID == properties.vendorID && driver.deviceID == properties.deviceID &&
                      std::memcmp(driver.pipelineCacheUUID, properties.pipelineCacheUUID, VK_UUID_SIZE) == 0;
    return ours ? data : std::string_view{};
}

std::string cacheFileOf(std::string_view data) {
    FileHeader header;
    std::memcpy(header.magic, kMagic.data(), sizeof header.magic);
    header.checksum = checksumOf(data);
    std::string file(sizeof header, '\0');
    std::memcpy(file.data(), &header, sizeof header);
    return file.append(data);
}

PipelineCache::PipelineCache(Device& device, const std::filesystem::path& directory) : device_(device) {
    std::string file;
    if (!directory.empty()) {
        file_ = fileFor(device, directory);
        std::error_code ignored;
        if (std::filesystem::exists(file_, ignored)) {
            auto content = readFile(file_, kMaxBytes);
            if (content)
                file = std::move(*content);
            else
                log::debug("Renderer", "pipeline cache not used: {}", content.error().message);
        }
    }
    loaded_ = cacheDataOf(file, device.properties);
    if (loaded_.empty() && !file.empty())
        log::debug("Renderer", "pipeline cache not used: it is damaged or of another driver");
    VkPipelineCacheCreateInfo info{.sType = VK_STRUCTURE_TYPE_PIPELINE_CACHE_CREATE_INFO,
                                   .initialDataSize = loaded_.size(),
                                   .pInitialData = loaded_.data()};
    VkPipelineCache cache = VK_NULL_HANDLE;
    VkResult result = device.vk.vkCreatePipelineCache(device.handle, &info, nullptr, &cache);
    if (result != VK_SUCCESS && info.initialDataSize != 0) { // without the data, then
        info.initialDataSize = 0;
        loaded_.clear();
        result = device.vk.vkCreatePipelineCache(device.handle, &info, nullptr, &cache);
    }
    if (result != VK_SUCCESS) { // pipelines are compiled without one, then
        log::debug("Renderer", "no pipeline cache: the driver refuses even an empty one");
        file_.clear();
        return;
    }
    cache_ = {device, cache};
    device.pipelineCache = cache;
}

PipelineCache::~PipelineCache() {
    device_.pipelineCache = VK_NULL_HANDLE;
}

void PipelineCache::save() noexcept {
    try {
        write();
    } catch (...) { // out of memory, while the context is being destroyed: the next run compiles anew
    }
}

void PipelineCache::write() {
    if (file_.empty())
        return;
    std::size_t size = 0;
    if (device_.vk.vkGetPipelineCacheData(device_.handle, cache_.get(), &size, nullptr) != VK_SUCCESS)
        return;
    std::string data(size, '\0');
    if (device_.vk.vkGetPipelineCacheData(device_.handle, cache_.get(), &size, data.data()) != VK_SUCCESS)
        return;
    data.resize(size);
    // No larger than its own header: this driver keeps nothing. And what is too large to be read again is
    // not worth writing.
    if (data == loaded_ || data.size() <= sizeof(VkPipelineCacheHeaderVersionOne) ||
        data.size() + sizeof(FileHeader) > kMaxBytes)
        return;
    if (const auto saved = writeFileDurably(file_, cacheFileOf(data)); !saved)
        log::warn("Renderer", "the pipeline cache was not saved: {}", saved.error().message);
}

} // namespace tarvik::rhi
