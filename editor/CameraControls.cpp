#include "CameraControls.hpp"

#include <utility>

namespace tarvik::editor {
namespace {

enum class Gesture : std::uint8_t { None, Look, Orbit, Pan };

Gesture gestureOf(const InputState& input, bool alt) {
    if (input.isHeld(MouseButton::Right))
        return Gesture::Look;
    if (input.isHeld(MouseButton::Middle))
        return alt ? Gesture::Orbit : Gesture::Pan;
    return alt && input.isHeld(MouseButton::Left) ? Gesture::Orbit : Gesture::None;
}

bool begins(const InputState& input) {
    return input.wasPressed(MouseButton::Left) || input.wasPressed(MouseButton::Right) ||
           input.wasPressed(MouseButton::Middle);
}

// -1, 0 or 1.
float axis(const InputState& input, Key negative, Key positive) {
    return static_cast<float>(input.isHeld(positive)) - static_cast<float>(input.isHeld(negative));
}

} // namespace

void CameraControls::show(const Scene* scene, Viewpoint viewpoint) {
    opening_.show(scene);
    if (viewpoint == Viewpoint::New)
        camera_.reset();
}

void CameraControls::pointerAt(const glm::vec2& ndc, Qt::KeyboardModifiers modifiers) {
    drag_ += ndc - std::exchange(pointer_, ndc);
    alt_ = modifiers.testFlag(Qt::AltModifier);
}

void CameraControls::update(float seconds, const InputState& input, bool windowActive) {
    frameBegun_ = true;
    const glm::vec2 drag = std::exchange(drag_, glm::vec2(0.0F));
    // The way to the press is no part of the gesture.
    const float share = begins(input) ? 0.0F : 1.0F;
    const Gesture gesture = gestureOf(input, alt_);
    if (gesture == Gesture::None && input.scroll() == 0.0F) {
        opening_.advance(seconds);
        return;
    }
    EditorCamera& camera = takenOver();
    switch (gesture) {
    case Gesture::Look:
        camera.look(share * input.mouseDelta());
        camera.changeSpeed(input.scroll());
        if (windowActive)
            fly(camera, seconds, input);
        return;
    case Gesture::Orbit:
        camera.orbit(share * input.mouseDelta());
        break;
    case Gesture::Pan:
        camera.pan(share * drag, opening_.lens(), aspect_);
        break;
    case Gesture::None:
        break;
    }
    camera.dolly(input.scroll());
}

void CameraControls::frame(const Sphere& sphere) {
    takenOver().frame(sphere, opening_.lens(), aspect_);
}

CameraView CameraControls::view(float aspect) {
    if (std::exchange(frameBegun_, false))
        aspect_ = aspect;
    return viewAt(aspect);
}

CameraView CameraControls::seen() const {
    return viewAt(aspect_);
}

CameraView CameraControls::viewAt(float aspect) const {
    return camera_ ? camera_->view(opening_.lens(), aspect) : opening_.view(aspect);
}

EditorCamera& CameraControls::takenOver() {
    if (!camera_)
        camera_.emplace(opening_.view(aspect_), opening_.distance());
    return *camera_;
}

void CameraControls::fly(EditorCamera& camera, float seconds, const InputState& input) {
    const glm::vec3 direction{axis(input, Key::A, Key::D), axis(input, Key::Q, Key::E),
                              axis(input, Key::S, Key::W)};
    camera.fly(direction, input.isHeld(Key::Shift) ? Pace::Run : Pace::Walk, seconds);
}

} // namespace tarvik::editor
