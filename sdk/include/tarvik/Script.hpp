#pragma once

#include <tarvik/ScriptAbi.hpp>

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

// What a game's behaviours are written with. All of it belongs on the thread that calls the behaviour.
namespace tarvik::script {

struct Vec3 {
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;

    constexpr Vec3& operator+=(Vec3 other) { return *this = {x + other.x, y + other.y, z + other.z}; }
    constexpr Vec3& operator-=(Vec3 other) { return *this = {x - other.x, y - other.y, z - other.z}; }
    constexpr Vec3& operator*=(float factor) { return *this = {x * factor, y * factor, z * factor}; }
    constexpr Vec3& operator/=(float divisor) { return *this = {x / divisor, y / divisor, z / divisor}; }
    friend constexpr Vec3 operator+(Vec3 a, Vec3 b) { return a += b; }
    friend constexpr Vec3 operator-(Vec3 a, Vec3 b) { return a -= b; }
    friend constexpr Vec3 operator-(Vec3 v) { return {-v.x, -v.y, -v.z}; }
    friend constexpr Vec3 operator*(Vec3 v, float factor) { return v *= factor; }
    friend constexpr Vec3 operator*(float factor, Vec3 v) { return v *= factor; }
    friend constexpr Vec3 operator/(Vec3 v, float divisor) { return v /= divisor; }
    friend constexpr bool operator==(Vec3 a, Vec3 b) { return a.x == b.x && a.y == b.y && a.z == b.z; }
    friend constexpr bool operator!=(Vec3 a, Vec3 b) { return !(a == b); }
};

[[nodiscard]] constexpr float dot(Vec3 a, Vec3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
[[nodiscard]] constexpr Vec3 cross(Vec3 a, Vec3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
[[nodiscard]] inline float length(Vec3 v) {
    return std::sqrt(dot(v, v));
}
// Zero stays zero.
[[nodiscard]] inline Vec3 normalize(Vec3 v) {
    const float size = length(v);
    return size > 0.0F ? v / size : v;
}

// clang-format off
enum class Key : std::uint8_t {
    W, A, S, D, Q, E, F, Up, Down, Left, Right, Space,
    Shift, Control, Alt, Escape, Enter, Tab, Backspace,
    B, C, G, H, I, J, K, L, M, N, O, P, R, T, U, V, X, Y, Z,
    Num0, Num1, Num2, Num3, Num4, Num5, Num6, Num7, Num8, Num9,
};

enum class GamepadButton : std::uint8_t {
    A, B, X, Y, LeftShoulder, RightShoulder, Back, Start, Guide,
    LeftThumb, RightThumb, DpadUp, DpadDown, DpadLeft, DpadRight,
};
// clang-format on

enum class GamepadAxis : std::uint8_t { LeftX, LeftY, RightX, RightY, LeftTrigger, RightTrigger };

// What the macros below are made of.
namespace detail {

inline const abi::Host* host = nullptr;
inline abi::Entity entityOfNewBehaviour = abi::kNoEntity;

constexpr abi::Text toText(std::string_view text) {
    return {text.data(), text.size()};
}

inline Vec3 read(abi::Entity entity, abi::Quantity quantity) {
    float xyz[3] = {};
    host->read(host->game, entity, quantity, xyz);
    return {xyz[0], xyz[1], xyz[2]};
}

inline void write(abi::Entity entity, abi::Quantity quantity, Vec3 value) {
    const float xyz[3] = {value.x, value.y, value.z};
    host->write(host->game, entity, quantity, xyz);
}

} // namespace detail

// An entity of the scene, or none. Cheap to copy and to keep.
class Entity final {
public:
    Entity() = default;
    explicit Entity(abi::Entity id) : id_(id) {}

    [[nodiscard]] abi::Entity id() const { return id_; }
    explicit operator bool() const { return id_ != abi::kNoEntity; }
    friend bool operator==(Entity a, Entity b) { return a.id_ == b.id_; }
    friend bool operator!=(Entity a, Entity b) { return a.id_ != b.id_; }

    // No entity reads as empty and zero; setting anything of it does nothing.
    [[nodiscard]] std::string name() const {
        const abi::Text text = detail::host->name(detail::host->game, id_);
        return std::string(text.data, text.size);
    }
    [[nodiscard]] Vec3 position() const { return detail::read(id_, abi::kPosition); }
    void setPosition(Vec3 metres) { detail::write(id_, abi::kPosition, metres); }
    // About x, y and z; roll (z) comes first, then pitch (x), then yaw (y). Reads as it was set, also beyond
    // 360.
    [[nodiscard]] Vec3 rotation() const { return detail::read(id_, abi::kRotation); }
    void setRotation(Vec3 degrees) { detail::write(id_, abi::kRotation, degrees); }
    [[nodiscard]] Vec3 scale() const { return detail::read(id_, abi::kScale); }
    void setScale(Vec3 factors) { detail::write(id_, abi::kScale, factors); }

private:
    abi::Entity id_ = abi::kNoEntity;
};

namespace detail {

class PropertyVisitor {
public:
    virtual void visit(std::string_view name, float& value) = 0;
    virtual void visit(std::string_view name, bool& value) = 0;
    virtual void visit(std::string_view name, int& value) = 0;
    virtual void visit(std::string_view name, Vec3& value) = 0;
    virtual void visit(std::string_view name, std::string& value) = 0;

protected:
    ~PropertyVisitor() = default;
};

// Cuts the first of "a, b, c" off.
inline std::string_view takeName(std::string_view& names) {
    const std::size_t end = names.find(',');
    const std::string_view name = names.substr(0, end);
    names =
        end == std::string_view::npos ? std::string_view() : names.substr(names.find_first_not_of(", ", end));
    return name;
}

template <typename Member, typename... Types>
inline constexpr bool isAnyOf = (std::is_same_v<Member, Types> || ...);

template <typename... Members>
void visitEach(PropertyVisitor& visitor, std::string_view names, Members&... members) {
    static_assert((isAnyOf<Members, float, bool, int, Vec3, std::string> && ...),
                  "a property is a float, a bool, an int, a Vec3 or a std::string");
    (visitor.visit(takeName(names), members), ...);
}

} // namespace detail

// A piece of gameplay, attached to an entity. An exception that leaves one of its functions is a line in the
// log, and the behaviour rests until the code is built again.
//
// New code replaces the old while the game runs: the entities stay as they are, every behaviour is made anew,
// and its start() is called. Properties keep their values.
class Behaviour {
public:
    Behaviour(const Behaviour&) = delete;
    Behaviour& operator=(const Behaviour&) = delete;
    virtual ~Behaviour() = default;

    // Before the first update. The game may run already, when it is code that has just been replaced.
    virtual void start() {}
    // Once a frame; dt is the time since the last one in seconds, 0.25 at most.
    virtual void update([[maybe_unused]] float dt) {}
    // The game ends, or other code takes over, whose start() has come before; what this sets then is lost.
    virtual void stop() {}

    [[nodiscard]] Entity entity() const { return entity_; }
    [[nodiscard]] std::string name() const { return entity_.name(); }
    [[nodiscard]] Vec3 position() const { return entity_.position(); }
    void setPosition(Vec3 metres) { entity_.setPosition(metres); }
    [[nodiscard]] Vec3 rotation() const { return entity_.rotation(); }
    void setRotation(Vec3 degrees) { entity_.setRotation(degrees); }
    [[nodiscard]] Vec3 scale() const { return entity_.scale(); }
    void setScale(Vec3 factors) { entity_.setScale(factors); }

    // The first entity of that name, or none.
    [[nodiscard]] static Entity find(std::string_view name) {
        return Entity(detail::host->find(detail::host->game, detail::toText(name)));
    }

    void log(std::string_view message) const {
        detail::host->log(detail::host->game, entity_.id(), detail::toText(message));
    }

    // Pressed and released speak of this frame.
    [[nodiscard]] static bool isHeld(Key key) { return is(key, abi::kHeld); }
    [[nodiscard]] static bool wasPressed(Key key) { return is(key, abi::kPressed); }
    [[nodiscard]] static bool wasReleased(Key key) { return is(key, abi::kReleased); }
    [[nodiscard]] static bool isHeld(GamepadButton button) { return is(button, abi::kHeld); }
    [[nodiscard]] static bool wasPressed(GamepadButton button) { return is(button, abi::kPressed); }
    [[nodiscard]] static bool wasReleased(GamepadButton button) { return is(button, abi::kReleased); }
    [[nodiscard]] static bool gamepadConnected() {
        return detail::host->gamepadConnected(detail::host->game) != 0;
    }
    // Sticks from -1 to 1, x to the right and y downwards; triggers from 0 to 1.
    [[nodiscard]] static float gamepadAxis(GamepadAxis axis) {
        return detail::host->gamepadAxis(detail::host->game, static_cast<std::uint32_t>(axis));
    }

    // Written by TARVIK_PROPERTIES.
    virtual void visitProperties([[maybe_unused]] detail::PropertyVisitor& visitor) {}

protected:
    Behaviour() = default;

private:
    static bool is(Key key, abi::Switch state) {
        return (detail::host->key(detail::host->game, static_cast<std::uint32_t>(key)) & state) != 0;
    }
    static bool is(GamepadButton button, abi::Switch state) {
        const auto index = static_cast<std::uint32_t>(button);
        return (detail::host->gamepadButton(detail::host->game, index) & state) != 0;
    }

    Entity entity_{detail::entityOfNewBehaviour};
};

namespace detail {

// The module's behaviours, as a list that needs no memory of its own.
struct Registration {
    std::string_view name;
    Behaviour* (*create)();
    const Registration* next;

    static inline const Registration* first = nullptr;

    Registration(std::string_view behaviour, Behaviour* (*factory)())
        : name(behaviour),
          create(factory),
          next(first) {
        first = this;
    }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
};

template <typename Class>
Behaviour* create() {
    static_assert(std::is_base_of_v<Behaviour, Class>, "a behaviour derives from tarvik::script::Behaviour");
    return new Class;
}

} // namespace detail
} // namespace tarvik::script

// Makes a class known under its name. Once for each class, in a source file, outside of any namespace or
// function.
#define TARVIK_BEHAVIOUR(Class)                                                                              \
    [[maybe_unused]] static const ::tarvik::script::detail::Registration tarvikRegistrationOf##Class(        \
        #Class, &::tarvik::script::detail::create<Class>)

// Names the members whose values survive a reload: float, bool, int, Vec3 and std::string. Within the class,
// once. They have their old values when start() is called, and again after it.
#define TARVIK_PROPERTIES(...)                                                                               \
    void visitProperties(::tarvik::script::detail::PropertyVisitor& visitor) override {                      \
        ::tarvik::script::detail::visitEach(visitor, #__VA_ARGS__, __VA_ARGS__);                             \
    }                                                                                                        \
    static_assert(true)
