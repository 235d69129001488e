#include <tarvik/Script.hpp>

using namespace tarvik::script;

// One of the drops that leap from the top of the fountain into its basin, again and again.
class WaterDrop : public Behaviour {
public:
    void start() override {
        // "Water drop 7" is the seventh of twelve.
        const std::string own = name();
        number_ = std::stof(own.substr(own.find_last_of(' ') + 1));
        size_ = scale();
    }

    void update(float dt) override {
        time_ = std::fmod(time_ + dt, kFlight);
        const float time = std::fmod(time_ + number_ * 0.61f, kFlight);
        const float angle = number_ * 2.4f; // the golden angle: no two leap the same way
        const float reach = kSpread * time;
        setPosition(
            {reach * std::cos(angle), kTop + kRise * time - 4.9f * time * time, reach * std::sin(angle)});
        setScale(size_ * (1.0f - 0.5f * time / kFlight));
    }

private:
    static constexpr float kTop = 2.3f;
    static constexpr float kRise = 4.2f;    // metres a second
    static constexpr float kSpread = 1.2f;  // the same, outwards
    static constexpr float kFlight = 1.15f; // seconds
    float number_ = 0.0f;
    Vec3 size_{1.0f, 1.0f, 1.0f};
    float time_ = 0.0f;
    TARVIK_PROPERTIES(time_, size_);
};

TARVIK_BEHAVIOUR(WaterDrop);
