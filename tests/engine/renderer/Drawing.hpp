#pragma once

#include <tarvik/core/Logger.hpp>
#include <tarvik/renderer/RenderContext.hpp>
#include <tarvik/renderer/Renderer.hpp>
#include <tarvik/scene/Scene.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace tarvik::testing {

// Warnings and errors, which validation messages become.
struct Complaints final : LogSink {
    void write(const LogMessage& message) override {
        const std::scoped_lock guard(lock);
        if (message.level >= LogLevel::Warn)
            lines.push_back(message.message);
    }
    std::mutex lock;
    std::vector<std::string> lines;
};

// Watches the renderer through the validation layer; nothing may be complained about, the end included.
class DrawingTest : public ::testing::Test {
protected:
    DrawingTest() { Logger::instance().addSink(complaints_); }
    ~DrawingTest() override {
        renderer_.reset();
        context_.reset();
        Logger::instance().removeSink(complaints_);
        EXPECT_EQ(complaints_->lines, std::vector<std::string>{});
    }

    enum class Watch { Validated, Unwatched };
    void start(std::vector<std::string> extensions = {}, Watch watch = Watch::Validated,
               render::RenderContextConfig config = {}) {
        config.enableValidation = watch == Watch::Validated;
        config.instanceExtensions = std::move(extensions);
        context_ = std::make_unique<render::RenderContext>(config);
        renderer_ = std::make_unique<render::Renderer>(*context_);
    }

    std::shared_ptr<Complaints> complaints_ = std::make_shared<Complaints>();
    std::unique_ptr<render::RenderContext> context_;
    std::unique_ptr<render::Renderer> renderer_;
};

inline Entity entityOf(Mesh mesh, Colour colour, const glm::vec3& position = {},
                       const glm::vec3& scale = glm::vec3(1.0F)) {
    Entity entity;
    entity.mesh = mesh;
    entity.colour = colour;
    entity.transform.position = position;
    entity.transform.scale = scale;
    return entity;
}

} // namespace tarvik::testing
