#include <tarvik/Script.hpp>

using namespace tarvik::script;

// Goes a part of the ball's way with it, without haste.
class BallCamera : public Behaviour {
public:
    void start() override {
        ball_ = find("Ball");
        if (!placed_)
            offset_ = position() - ball_.position() * kShare;
        placed_ = true;
    }

    void update(float dt) override {
        const Vec3 ball = ball_.position();
        const Vec3 goal = offset_ + Vec3{ball.x, 0.0f, ball.z} * kShare;
        setPosition(position() + (goal - position()) * (1.0f - std::exp(-3.0f * dt)));
    }

private:
    static constexpr float kShare = 0.35f;
    Entity ball_;
    Vec3 offset_;
    bool placed_ = false;
    TARVIK_PROPERTIES(offset_, placed_);
};

TARVIK_BEHAVIOUR(BallCamera);
