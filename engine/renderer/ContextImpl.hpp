#pragma once

#include "Device.hpp"
#include "InstanceHandle.hpp"
#include "PipelineCache.hpp"
#include "Shaders.hpp"

#include <tarvik/renderer/RenderContext.hpp>

#include <chrono>

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

    // The target whose picture a software driver was given and has not presented, and when it was last
    // drawn to. Presenting would wait, without end, for what others give to the driver meanwhile.
    struct Turn {
        const void* target = nullptr;
        std::chrono::steady_clock::time_point since;
    };
    Turn turn;
};

} // namespace tarvik::render
