#pragma once

#include <tarvik/Script.hpp>

#include <cstring>
#include <exception>

// The entry points of a game module. Included by one source file of it.
namespace tarvik::script::detail {

inline void fail(abi::Entity entity, const char* function, const char* reason) {
    const std::string text = std::string(reason) + " in " + function;
    host->failed(host->game, entity, toText(text));
}

// Nothing that a behaviour throws goes any further.
template <typename Function>
void guard(abi::Entity entity, const char* name, Function function) noexcept {
    try {
        try {
            function();
        } catch (const std::exception& e) {
            fail(entity, name, e.what());
        } catch (...) {
            fail(entity, name, "an exception that is no std::exception");
        }
    } catch (...) { // no memory for the text
        host->failed(host->game, entity, toText(name));
    }
}

inline Behaviour& toBehaviour(void* behaviour) {
    return *static_cast<Behaviour*>(behaviour);
}

inline const Registration* registration(std::size_t index) {
    const Registration* found = Registration::first;
    while (index-- > 0)
        found = found->next;
    return found;
}

class PropertySaver final : public PropertyVisitor {
public:
    PropertySaver(void* context, abi::PropertySink sink) : context_(context), sink_(sink) {}

    void visit(std::string_view name, float& value) override {
        give(name, abi::kFloat, &value, sizeof value);
    }
    void visit(std::string_view name, int& value) override {
        const std::int32_t number = value;
        give(name, abi::kInt, &number, sizeof number);
    }
    void visit(std::string_view name, bool& value) override {
        const char byte = value ? 1 : 0;
        give(name, abi::kBool, &byte, sizeof byte);
    }
    void visit(std::string_view name, Vec3& value) override {
        const float xyz[] = {value.x, value.y, value.z};
        give(name, abi::kVec3, xyz, sizeof xyz);
    }
    void visit(std::string_view name, std::string& value) override {
        sink_(context_, toText(name), abi::kString, toText(value));
    }

private:
    void give(std::string_view name, abi::PropertyType type, const void* bytes, std::size_t size) {
        sink_(context_, toText(name), type, {static_cast<const char*>(bytes), size});
    }

    void* context_;
    abi::PropertySink sink_;
};

class PropertyRestorer final : public PropertyVisitor {
public:
    PropertyRestorer(std::string_view name, std::uint32_t type, std::string_view value)
        : name_(name),
          type_(type),
          value_(value) {}

    void visit(std::string_view name, float& value) override { take(name, abi::kFloat, value); }
    void visit(std::string_view name, int& value) override { take<std::int32_t>(name, abi::kInt, value); }
    void visit(std::string_view name, bool& value) override { take<char>(name, abi::kBool, value); }
    void visit(std::string_view name, Vec3& value) override {
        if (!isMeant(name, abi::kVec3) || value_.size() != 3 * sizeof(float))
            return;
        float xyz[3];
        std::memcpy(xyz, &value_.front(), sizeof xyz);
        value = {xyz[0], xyz[1], xyz[2]};
    }
    void visit(std::string_view name, std::string& value) override {
        if (isMeant(name, abi::kString))
            value = value_;
    }

private:
    [[nodiscard]] bool isMeant(std::string_view name, abi::PropertyType type) const {
        return name == name_ && type == type_;
    }

    template <typename Stored, typename Value>
    void take(std::string_view name, abi::PropertyType type, Value& value) {
        if (!isMeant(name, type) || value_.size() != sizeof(Stored))
            return;
        Stored stored;
        std::memcpy(&stored, &value_.front(), sizeof stored);
        value = static_cast<Value>(stored);
    }
    void take(std::string_view name, abi::PropertyType type, float& value) { take<float>(name, type, value); }

    std::string_view name_;
    std::uint32_t type_;
    std::string_view value_;
};

inline const abi::Module module = {
    [](const abi::Host* table) { host = table; },
    [] {
        std::size_t count = 0;
        for (const Registration* each = Registration::first; each != nullptr; each = each->next)
            ++count;
        return count;
    },
    [](std::size_t index) { return toText(registration(index)->name); },
    [](std::size_t index, abi::Entity entity) {
        Behaviour* created = nullptr;
        entityOfNewBehaviour = entity;
        guard(entity, "its constructor", [&] { created = registration(index)->create(); });
        entityOfNewBehaviour = abi::kNoEntity;
        return static_cast<void*>(created);
    },
    [](void* behaviour) { delete static_cast<Behaviour*>(behaviour); },
    [](void* behaviour) {
        guard(toBehaviour(behaviour).entity().id(), "start()", [&] { toBehaviour(behaviour).start(); });
    },
    [](void* const* behaviours, std::size_t count, float dt) {
        for (std::size_t i = 0; i < count; ++i) {
            Behaviour& behaviour = toBehaviour(behaviours[i]);
            guard(behaviour.entity().id(), "update()", [&] { behaviour.update(dt); });
        }
    },
    [](void* behaviour) {
        guard(toBehaviour(behaviour).entity().id(), "stop()", [&] { toBehaviour(behaviour).stop(); });
    },
    [](void* behaviour, void* context, abi::PropertySink sink) {
        guard(toBehaviour(behaviour).entity().id(), "its properties", [&] {
            PropertySaver saver(context, sink);
            toBehaviour(behaviour).visitProperties(saver);
        });
    },
    [](void* behaviour, abi::Text name, std::uint32_t type, abi::Text value) {
        guard(toBehaviour(behaviour).entity().id(), "its properties", [&] {
            PropertyRestorer restorer({name.data, name.size}, type, {value.data, value.size});
            toBehaviour(behaviour).visitProperties(restorer);
        });
    },
};

} // namespace tarvik::script::detail

#if defined(_WIN32)
#define TARVIK_SCRIPT_ENTRY extern "C" __declspec(dllexport)
#else
#define TARVIK_SCRIPT_ENTRY extern "C" __attribute__((visibility("default")))
#endif

// NOLINTBEGIN(misc-definitions-in-headers, readability-identifier-naming): one source includes this; names
// for C
TARVIK_SCRIPT_ENTRY std::uint32_t tarvik_script_abi_version() {
    return tarvik::script::abi::kVersion;
}

TARVIK_SCRIPT_ENTRY const tarvik::script::abi::Module* tarvik_script_module() {
    return &tarvik::script::detail::module;
}
// NOLINTEND(misc-definitions-in-headers, readability-identifier-naming)
