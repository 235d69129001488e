#pragma once

#include "Entities.hpp"
#include "LogCapture.hpp"

#include <tarvik/renderer/RenderContext.hpp>
#include <tarvik/renderer/Renderer.hpp>

#include <gtest/gtest.h>

#include <memory>

namespace tarvik::test {

// Watches the renderer through the validation layer, whose messages become warnings and errors; nothing may
// be complained about, the end included.
class DrawingTest : public ::testing::Test {
protected:
    ~DrawingTest() override {
        renderer_.reset();
        context_.reset();
        EXPECT_EQ(log_.lines(LogLevel::Warn), Lines{});
    }

    void start(const render::RenderContextConfig& config) {
        context_ = std::make_unique<render::RenderContext>(config);
        renderer_ = std::make_unique<render::Renderer>(*context_);
    }

    LogCapture log_;
    std::unique_ptr<render::RenderContext> context_;
    std::unique_ptr<render::Renderer> renderer_;
};

} // namespace tarvik::test
