#include <tarvik/Script.hpp>

using namespace tarvik::script;

// A tree's crown in a light wind.
class Sway : public Behaviour {
public:
    void start() override {
        if (!placed_)
            origin_ = position();
        placed_ = true;
    }

    void update(float dt) override {
        time_ += dt;
        // The wind wanders over the courtyard: neighbours sway almost alike.
        const float phase = 0.35f * (origin_.x + origin_.z);
        const float lean =
            0.045f * origin_.y * (std::sin(time_ * 1.3f + phase) + 0.4f * std::sin(time_ * 3.1f + phase));
        setPosition(origin_ + Vec3{0.4f * lean, 0.0f, 0.25f * lean});
    }

private:
    Vec3 origin_;
    bool placed_ = false;
    float time_ = 0.0f;
    TARVIK_PROPERTIES(origin_, placed_, time_);
};

TARVIK_BEHAVIOUR(Sway);
