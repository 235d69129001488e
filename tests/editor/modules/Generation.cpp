// Two modules are made of this, of two generations that differ in one number.
#include <tarvik/ScriptModuleMain.hpp>

#include <stdexcept>

using namespace tarvik::script;

// Writes down in its entity's scale how often it was started and updated, and by which generation.
class Counter : public Behaviour {
public:
    void start() override {
        speed = 5.0F; // what a property keeps, start() cannot take away
        setScale(
            {static_cast<float>(updates), static_cast<float>(GENERATION), label == "kept" ? 1.0F : 0.0F});
    }
    void update(float dt) override {
        updates += 1;
        speed += 1.0F;
        label = "kept";
        home.y = 2.0F;
        setPosition(position() + Vec3{speed, home.y, dt});
        setRotation(rotation() + Vec3{100.0F, 0.0F, 0.0F});
        if (isHeld(Key::W) && wasPressed(GamepadButton::DpadRight))
            find("Target").setPosition({gamepadAxis(GamepadAxis::RightTrigger), 0.0F, 7.0F});
    }
    void stop() override { setPosition({-1.0F, -1.0F, -1.0F}); }

private:
    float speed = 0.0F;
    int updates = 0;
    Vec3 home;
    std::string label;
    TARVIK_PROPERTIES(speed, updates, home, label);
};
TARVIK_BEHAVIOUR(Counter);

class Thrower : public Behaviour {
public:
    void start() override {
        if (GENERATION == 3)
            throw std::runtime_error("third generation");
    }
    void update(float) override {
        setPosition(position() + Vec3{1.0F, 0.0F, 0.0F});
        throw 42;
    }
};
TARVIK_BEHAVIOUR(Thrower);
