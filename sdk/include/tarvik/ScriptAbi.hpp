#pragma once

#include <cstddef>
#include <cstdint>

// What a game module and its host say to each other: plain records and C functions, so that the two may come
// from different compilers. A change to anything here makes a new kVersion. Texts are UTF-8 and not
// terminated.
namespace tarvik::script::abi {

inline constexpr std::uint32_t kVersion = 1;

using Entity = std::uint32_t;
inline constexpr Entity kNoEntity = 0xFFFF'FFFF;

struct Text {
    const char* data;
    std::size_t size;
};

enum Quantity : std::uint32_t {
    kPosition, // metres
    kRotation, // degrees about x, y and z; applied roll (z) first, then pitch (x), then yaw (y)
    kScale,
};

// Answers of Host::key and Host::gamepadButton, as bits.
enum Switch : std::uint32_t { kHeld = 1, kPressed = 2, kReleased = 4 };

enum PropertyType : std::uint32_t { kFloat, kBool, kInt, kVec3, kString };

// A value as bytes: float, int32_t, one byte for a bool, three floats, or text.
using PropertySink = void (*)(void* context, Text name, std::uint32_t type, Text value);

// What the host offers. Every function takes the game first; an entity that does not exist reads as nothing
// and is not written. No function throws.
struct Host {
    void* game;
    void (*log)(void* game, Entity entity, Text message);
    // An exception ended one of a behaviour's functions: the host calls that behaviour no more.
    void (*failed)(void* game, Entity entity, Text reason);
    Text (*name)(void* game, Entity entity); // lives as long as the game
    Entity (*find)(void* game, Text name);   // the first of that name, or kNoEntity
    void (*read)(void* game, Entity entity, std::uint32_t quantity, float* xyz);
    void (*write)(void* game, Entity entity, std::uint32_t quantity, const float* xyz);
    std::uint32_t (*key)(void* game, std::uint32_t key);
    std::uint32_t (*gamepadButton)(void* game, std::uint32_t button);
    float (*gamepadAxis)(void* game, std::uint32_t axis);
    std::uint32_t (*gamepadConnected)(void* game);
};

// What the module offers. Behaviours are known by the pointer that create returned.
struct Module {
    // First of all. The host table must outlive the module's use.
    void (*attach)(const Host* host);
    std::size_t (*behaviourCount)();
    Text (*behaviourName)(std::size_t index);
    // Null when the constructor threw, which failed() has told by then.
    void* (*create)(std::size_t index, Entity entity);
    void (*destroy)(void* behaviour);
    void (*start)(void* behaviour);
    // All of them in turn; dt in seconds.
    void (*update)(void* const* behaviours, std::size_t count, float dt);
    void (*stop)(void* behaviour);
    void (*saveProperties)(void* behaviour, void* context, PropertySink sink);
    // Nothing happens when the behaviour has no property of that name and type.
    void (*restoreProperty)(void* behaviour, Text name, std::uint32_t type, Text value);
};

// The module's entry points, by these names. The table is asked for only when the number is kVersion.
inline constexpr const char* kVersionEntry = "tarvik_script_abi_version";
inline constexpr const char* kModuleEntry = "tarvik_script_module";
using VersionEntry = std::uint32_t (*)();
using ModuleEntry = const Module* (*)();

} // namespace tarvik::script::abi
