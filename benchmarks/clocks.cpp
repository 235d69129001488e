#include <tarvik/ScriptModuleMain.hpp>

using namespace tarvik::script;

class Clock1 : public Behaviour {
    void update(float dt) override { time_ += dt; }
    float time_ = 0.0F;
};
TARVIK_BEHAVIOUR(Clock1);

class Clock2 : public Behaviour {
    void update(float dt) override { time_ -= dt; }
    float time_ = 0.0F;
};
TARVIK_BEHAVIOUR(Clock2);
