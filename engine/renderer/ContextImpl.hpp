#pragma once

#include "Device.hpp"
#include "InstanceHandle.hpp"
#include "PipelineCache.hpp"
#include "Shaders.hpp"

#include <tarvik/renderer/RenderContext.hpp>

namespace tarvik::render {

struct RenderContext::Impl final {
    explicit Impl(const RenderContextConfig& config);
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl();

    rhi::InstanceHandle instance;
    rhi::Device device;
    rhi::PipelineCache pipelineCache;
    ShaderSource shaders;
};

} // namespace tarvik::render
