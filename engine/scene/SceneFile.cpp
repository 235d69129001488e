#include <tarvik/scene/SceneFile.hpp>

#include <tarvik/core/File.hpp>
#include <tarvik/core/JsonFields.hpp>
#include <tarvik/core/JsonFile.hpp>
#include <tarvik/core/Paths.hpp>
#include <tarvik/scene/Rotation.hpp>

#include <fmt/format.h>
#include <glm/gtc/quaternion.hpp>
#include <glm/trigonometric.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace tarvik {

namespace fs = std::filesystem;

namespace {

constexpr std::array<std::string_view, kMeshCount> kMeshNames{"none", "cube", "sphere", "cylinder", "plane"};
constexpr std::array<std::string_view, 2> kLightNames{"directional", "point"};

struct Range {
    double least;
    double most;
};
constexpr Range kPosition{-1e6, 1e6};
constexpr Range kDegrees{-1e6, 1e6};
constexpr Range kScale{1e-6, 1e6};
constexpr Range kIntensity{0.0, 1e6};
constexpr Range kReach{1e-3, 1e6};
constexpr Range kFovDegrees{1.0, 179.0};
constexpr Range kNear{1e-4, 1e4};

float number(const JsonFields& fields, std::string_view field, Range range, double absent) {
    return static_cast<float>(fields.number(field, range.least, range.most, absent));
}

glm::vec3 vector(const JsonFields& fields, std::string_view field, Range range, const glm::vec3& absent) {
    const Json* value = fields.find(field);
    if (value == nullptr)
        return absent;
    if (!value->is_array() || value->size() != 3) {
        fields.fail(field, "a list of three numbers", *value);
        return absent;
    }
    const auto component = [&](std::size_t index) {
        return static_cast<float>(fields.number(field, (*value)[index], range.least, range.most));
    };
    return {component(0), component(1), component(2)};
}

template <typename Enum, std::size_t Size>
Enum choice(const JsonFields& fields, std::string_view field,
            const std::array<std::string_view, Size>& names) {
    const Json* value = fields.find(field);
    if (value == nullptr)
        return Enum{};
    for (std::size_t index = 0; index < names.size(); ++index)
        if (*value == names[index])
            return static_cast<Enum>(index);
    fields.fail(field, fmt::format("one of {}", fmt::join(names, ", ")), *value);
    return Enum{};
}

std::optional<Colour> parseColour(std::string_view text) {
    if (text.size() != 7 || text[0] != '#')
        return std::nullopt;
    std::uint32_t rgb = 0;
    const auto [end, code] = std::from_chars(text.data() + 1, text.data() + text.size(), rgb, 16);
    if (code != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    const auto channel = [rgb](unsigned shift) {
        return static_cast<std::uint8_t>((rgb >> shift) & 0xFFU);
    };
    return Colour{channel(16), channel(8), channel(0)};
}

Colour colour(const JsonFields& fields) {
    const Json* value = fields.find("colour");
    if (value == nullptr)
        return {};
    const auto parsed = value->is_string() ? parseColour(value->get_ref<const std::string&>()) : std::nullopt;
    if (!parsed)
        fields.fail("colour", "a colour like \"#3366ff\"", *value);
    return parsed.value_or(Colour{});
}

Light readLight(const JsonFields& fields) {
    return {.kind = choice<LightKind>(fields, "kind", kLightNames),
            .colour = colour(fields),
            .intensity = number(fields, "intensity", kIntensity, Light{}.intensity),
            .range = number(fields, "range", kReach, Light{}.range)};
}

Camera readCamera(const JsonFields& fields) {
    return {.fovY = glm::radians(number(fields, "fovY", kFovDegrees, glm::degrees(Camera{}.fovY))),
            .nearPlane = number(fields, "near", kNear, Camera{}.nearPlane)};
}

// The problem stays empty when every field is right.
Entity readEntity(const Json& json, JsonProblem& problem) {
    const JsonFields fields(json, problem);
    Entity entity;
    entity.name = fields.text("name");
    entity.transform.position = vector(fields, "position", kPosition, entity.transform.position);
    entity.transform.rotation = quatFromDegrees(vector(fields, "rotation", kDegrees, glm::vec3(0.0F)));
    entity.transform.scale = vector(fields, "scale", kScale, entity.transform.scale);
    entity.mesh = choice<Mesh>(fields, "mesh", kMeshNames);
    entity.colour = colour(fields);
    entity.behaviour = fields.text("behaviour");
    if (const auto light = fields.object("light"))
        entity.light = readLight(*light);
    if (const auto camera = fields.object("camera"))
        entity.camera = readCamera(*camera);
    return entity;
}

// A double that prints as the float does: 0.1 and not 0.10000000149011612.
double tidy(float value) {
    const std::string text = fmt::format("{}", value);
    double result = value;
    std::from_chars(text.data(), text.data() + text.size(), result);
    return result;
}

double tidyDegrees(float value) {
    return std::round(static_cast<double>(value) * 1e4) / 1e4 + 0.0; // no "-0.0"
}

std::string hexOf(const Colour& colour) {
    return fmt::format("#{:02x}{:02x}{:02x}", colour.red, colour.green, colour.blue);
}

// Fields that hold their default are left out.
Json toJson(const Entity& entity) {
    const Transform& transform = entity.transform;
    const glm::vec3 degrees = degreesFromQuat(transform.rotation);
    const auto list = [](const glm::vec3& v, double (*round)(float)) {
        return Json::array({round(v.x), round(v.y), round(v.z)});
    };
    Json json{{"name", entity.name}, {"position", list(transform.position, tidy)}};
    if (const Json rotation = list(degrees, tidyDegrees); rotation != Json::array({0.0, 0.0, 0.0}))
        json["rotation"] = rotation;
    if (transform.scale != glm::vec3(1.0F))
        json["scale"] = list(transform.scale, tidy);
    if (entity.mesh != Mesh::None)
        json["mesh"] = kMeshNames[static_cast<std::size_t>(entity.mesh)];
    if (entity.colour != Colour{})
        json["colour"] = hexOf(entity.colour);
    if (entity.light)
        json["light"] = {{"kind", kLightNames[static_cast<std::size_t>(entity.light->kind)]},
                         {"colour", hexOf(entity.light->colour)},
                         {"intensity", tidy(entity.light->intensity)},
                         {"range", tidy(entity.light->range)}};
    if (entity.camera)
        json["camera"] = {{"fovY", tidyDegrees(glm::degrees(entity.camera->fovY))},
                          {"near", tidy(entity.camera->nearPlane)}};
    if (!entity.behaviour.empty())
        json["behaviour"] = entity.behaviour;
    return json;
}

std::string describe(std::size_t index, const std::string& name, const std::string& problem) {
    return fmt::format("entities[{}] \"{}\": {}", index, name, problem);
}

} // namespace

std::expected<Scene, Error> loadScene(const fs::path& file) {
    const auto json = readJsonFile(file);
    if (!json)
        return std::unexpected(json.error());
    JsonProblem problem;
    const JsonFields fields(*json, problem);
    Scene scene(fields.find("name") == nullptr ? paths::toUtf8(file.stem()) : fields.text("name"));
    const Json none = Json::array();
    const Json* entities = fields.find("entities");
    if (entities == nullptr)
        problem.reason = "the list \"entities\" is missing";
    else if (!entities->is_array())
        fields.fail("entities", "a list", *entities);
    for (const Json& each : problem.reason.empty() ? *entities : none) {
        Entity entity = readEntity(each, problem);
        if (!problem.reason.empty()) {
            problem = {describe(scene.size(), entity.name, problem.reason),
                       fmt::format("entities/{}/{}", scene.size(), problem.where)};
            break;
        }
        scene.add(std::move(entity));
    }
    if (!problem.reason.empty())
        return std::unexpected(errorIn(file, problem));
    return scene;
}

std::expected<void, Error> saveScene(const Scene& scene, const fs::path& file) {
    Json entities = Json::array();
    for (std::size_t index = 0; index < scene.size(); ++index) {
        Json json = toJson(scene.entity(index));
        // What is saved can be loaded again: a value that loading refuses, such as infinity, stays out.
        JsonProblem problem;
        static_cast<void>(readEntity(json, problem));
        if (!problem.reason.empty())
            return makeError("cannot write {}: {}", paths::toUtf8(file),
                             describe(index, scene.entityName(index), problem.reason));
        entities.push_back(std::move(json));
    }
    // What stands there and cannot be understood may be somebody's half-finished edit.
    std::error_code error;
    if (fs::is_regular_file(file, error) && !readJsonFile(file)) {
        if (const auto copy = keepAside(file); !copy)
            return std::unexpected(copy.error());
    }
    return writeJsonFile(file, Json{{"name", scene.name()}, {"entities", std::move(entities)}});
}

} // namespace tarvik
