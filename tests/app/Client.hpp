#pragma once

#include "IdleClient.hpp"

#include <functional>

namespace tarvik::test {

struct Client : bench::IdleClient {
    std::function<void(const char* operation)> called; // may throw
    const Scene* scene = nullptr;
    float dt = -1.0F;
    float aspect = 0.0F;
    glm::vec2 motion{0.0F};
    float scroll = 0.0F;

    void update(float step, const InputState& input, bool /*windowActive*/) override {
        dt = step;
        motion += input.mouseDelta();
        scroll += input.scroll();
        tell("update");
    }
    const Scene* activeScene() override {
        tell("activeScene");
        return scene;
    }
    CameraView cameraView(float ratio) override {
        aspect = ratio;
        tell("cameraView");
        return lookAt({0.0F, 0.0F, 5.0F}, {0.0F, 0.0F, 0.0F}, 0.9F, ratio, 0.1F);
    }
    render::RenderSettings renderSettings() override {
        tell("renderSettings");
        return {.grid = false};
    }

private:
    void tell(const char* operation) const {
        if (called)
            called(operation);
    }
};

} // namespace tarvik::test
