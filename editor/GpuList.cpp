#include "GpuList.hpp"

#include <exception>

namespace tarvik::editor {

GpuList availableGpus() {
    try {
        return rhi::Instance::availableGpus();
    } catch (const std::exception& e) {
        return makeError("cannot list the GPUs: {}", e.what());
    }
}

} // namespace tarvik::editor
