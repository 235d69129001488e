#include <tarvik/Script.hpp>

#include <algorithm>

using namespace tarvik::script;

// The player's ball: W A S D, the arrow keys or the left stick roll it, Space or A lets it jump.
class Ball : public Behaviour {
public:
    void update(float dt) override {
        const float friction = std::exp(-2.5f * dt);
        velocity_ = Vec3{velocity_.x * friction, velocity_.y - 14.0f * dt, velocity_.z * friction};
        velocity_ += wanted() * (18.0f * dt);
        Vec3 place = position() + velocity_ * dt;
        if (place.y < kFloor) {
            place.y = kFloor;
            velocity_.y = wantsJump() ? 5.5f : std::max(-0.45f * velocity_.y - 0.3f, 0.0f);
        }
        keepOffFountain(place);
        keepInside(place.x, velocity_.x, 7.2f);
        keepInside(place.z, velocity_.z, 6.9f);
        setPosition(place);
    }

private:
    // The camera stands in the south-east: what is up on the screen is north-west in the courtyard.
    static Vec3 wanted() {
        Vec3 screen{gamepadAxis(GamepadAxis::LeftX), 0.0f, gamepadAxis(GamepadAxis::LeftY)};
        screen.x += held(Key::D, Key::Right) - held(Key::A, Key::Left);
        screen.z += held(Key::S, Key::Down) - held(Key::W, Key::Up);
        const float size = length(screen);
        if (size > 1.0f)
            screen /= size;
        constexpr float kCos = 0.8f;
        constexpr float kSin = 0.6f;
        return {kCos * screen.x + kSin * screen.z, 0.0f, kCos * screen.z - kSin * screen.x};
    }

    static float held(Key key, Key other) { return isHeld(key) || isHeld(other) ? 1.0f : 0.0f; }

    static bool wantsJump() { return isHeld(Key::Space) || isHeld(GamepadButton::A); }

    void keepOffFountain(Vec3& place) {
        Vec3 away{place.x, 0.0f, place.z};
        const float distance = length(away);
        constexpr float kRadius = 2.5f;
        if (distance >= kRadius || place.y > 1.0f)
            return;
        away = distance > 0.0f ? away / distance : Vec3{1.0f, 0.0f, 0.0f};
        place = Vec3{0.0f, place.y, 0.0f} + away * kRadius;
        const float inwards = std::min(dot(velocity_, away), 0.0f);
        velocity_ -= away * (1.6f * inwards);
    }

    static void keepInside(float& place, float& velocity, float limit) {
        if (std::abs(place) < limit)
            return;
        place = std::copysign(limit, place);
        velocity *= -0.6f;
    }

    static constexpr float kFloor = 0.4f;
    Vec3 velocity_;
    TARVIK_PROPERTIES(velocity_);
};

TARVIK_BEHAVIOUR(Ball);
