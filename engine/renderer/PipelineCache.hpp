#pragma once

#include "Device.hpp"

#include <tarvik/renderer/Export.hpp>

#include <filesystem>
#include <string>
#include <string_view>

namespace tarvik::rhi {

// Drivers trust what they are handed, so a file carries a checksum and is used only when that is right and
// the data was made by this very driver. Empty when it is not.
[[nodiscard]] TARVIK_RENDERER_API std::string_view cacheDataOf(std::string_view file,
                                                               const VkPhysicalDeviceProperties& properties);
[[nodiscard]] TARVIK_RENDERER_API std::string cacheFileOf(std::string_view data);

// Compiled pipelines, kept on disk between runs. What goes wrong with the file costs time, nothing else.
class PipelineCache final {
public:
    // An empty directory: nothing is kept.
    PipelineCache(Device& device, const std::filesystem::path& directory);
    PipelineCache(const PipelineCache&) = delete;
    PipelineCache& operator=(const PipelineCache&) = delete;
    ~PipelineCache();

    void save() noexcept;

private:
    void write();

    Device& device_;
    std::filesystem::path file_;
    std::string loaded_;
    UniquePipelineCache cache_;
};

} // namespace tarvik::rhi
