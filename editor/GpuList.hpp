#pragma once

#include <tarvik/core/Error.hpp>
#include <tarvik/renderer/Instance.hpp>

#include <expected>
#include <vector>

namespace tarvik::editor {

using GpuList = std::expected<std::vector<rhi::Gpu>, Error>;

// The GPUs that Vulkan knows, or why there is no telling. Asks the drivers, which can take a moment.
[[nodiscard]] GpuList availableGpus();

} // namespace tarvik::editor
