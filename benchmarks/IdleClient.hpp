#pragma once

#include <tarvik/app/ViewportClient.hpp>

namespace tarvik::bench {

// Looks at an empty scene and does nothing.
class IdleClient : public app::ViewportClient {
public:
    void update(float /*dt*/, const InputState& /*input*/, bool /*windowActive*/) override {}
    const Scene* activeScene() override { return nullptr; }
    CameraView cameraView(float /*aspect*/) override { return {}; }
    render::RenderSettings renderSettings() override { return {}; }
    void clicked(glm::vec2 /*ndc*/) override {}
    bool mousePressed(glm::vec2 /*ndc*/, Qt::MouseButton /*button*/,
                      Qt::KeyboardModifiers /*modifiers*/) override {
        return false;
    }
    void mouseMoved(glm::vec2 /*ndc*/, Qt::KeyboardModifiers /*modifiers*/) override {}
    void mouseReleased(glm::vec2 /*ndc*/, Qt::MouseButton /*button*/) override {}
    bool canDrop(const QList<QUrl>& /*urls*/) override { return false; }
    void dropped(const QList<QUrl>& /*urls*/, glm::vec2 /*ndc*/) override {}
    bool keyPressed(int /*key*/, Qt::KeyboardModifiers /*modifiers*/) override { return false; }
};

} // namespace tarvik::bench
