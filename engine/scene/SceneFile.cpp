#include <tarvik/scene/SceneFile.hpp>

#include <tarvik/core/JsonFile.hpp>
#include <tarvik/core/Paths.hpp>

#include <fmt/format.h>
#include <glm/gtc/quaternion.hpp>
#include <glm/trigonometric.hpp>

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
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

// Rotations are written as degrees about x, y and z, applied in the order z, x, y: first roll, then pitch,
// then yaw.
glm::quat quatFromDegrees(const glm::vec3& degrees) {
    const glm::vec3 angles = glm::radians(degrees);
    return glm::angleAxis(angles.y, glm::vec3(0.0F, 1.0F, 0.0F)) *
           glm::angleAxis(angles.x, glm::vec3(1.0F, 0.0F, 0.0F)) *
           glm::angleAxis(angles.z, glm::vec3(0.0F, 0.0F, 1.0F));
}

glm::vec3 degreesFromQuat(const glm::quat& rotation) {
    const glm::mat3 m = glm::mat3_cast(glm::normalize(rotation));
    const float sinPitch = std::clamp(-m[2][1], -1.0F, 1.0F);
    constexpr float kGimbalLock = 0.999999F;
    const bool locked = std::abs(sinPitch) > kGimbalLock; // yaw and roll turn about one axis: all is yaw
    const float yaw = locked ? std::atan2(-m[0][2], m[0][0]) : std::atan2(m[2][0], m[2][2]);
    const float roll = locked ? 0.0F : std::atan2(m[0][1], m[1][1]);
    return glm::degrees(glm::vec3(std::asin(sinPitch), yaw, roll));
}

// Reads the fields of one entity. The first wrong value is remembered and later ones are ignored, so that the
// code that reads needs no check after every field.
class EntityReader final {
public:
    explicit EntityReader(const Json& json) : json_(json) {}

    Entity read() {
        Entity entity;
        if (!json_.is_object()) {
            error_ = fmt::format("must be an object, not a {}", json_.type_name());
            return entity;
        }
        entity.name = text(json_, "name");
        entity.transform.position = vector("position", kPosition, glm::vec3(0.0F));
        entity.transform.rotation = quatFromDegrees(vector("rotation", kDegrees, glm::vec3(0.0F)));
        entity.transform.scale = vector("scale", kScale, glm::vec3(1.0F));
        entity.mesh = choice<Mesh>(json_, "mesh", kMeshNames);
        entity.colour = colour(json_);
        entity.behaviour = text(json_, "behaviour");
        if (const Json* light = object("light")) {
            entity.light = {.kind = choice<LightKind>(*light, "kind", kLightNames),
                            .colour = colour(*light),
                            .intensity = number(*light, "intensity", kIntensity, Light{}.intensity),
                            .range = number(*light, "range", kReach, Light{}.range)};
            group_ = "";
        }
        if (const Json* camera = object("camera")) {
            const float fov = number(*camera, "fovY", kFovDegrees, glm::degrees(Camera{}.fovY));
            entity.camera = {.fovY = glm::radians(fov),
                             .nearPlane = number(*camera, "near", kNear, Camera{}.nearPlane)};
            group_ = "";
        }
        return entity;
    }

    // Empty when every field was right.
    [[nodiscard]] const std::string& error() const { return error_; }

private:
    void fail(std::string_view field, const std::string& expected, const Json& value) {
        if (!error_.empty())
            return;
        const std::string found =
            value.is_primitive() && !value.is_string() ? value.dump() : value.type_name();
        error_ = fmt::format("\"{}{}\" must be {}, not {}", group_, field, expected, found);
    }

    static const Json* find(const Json& object, std::string_view field) {
        const auto found = object.find(field);
        return found == object.end() ? nullptr : &*found;
    }

    const Json* object(std::string_view field) {
        const Json* value = find(json_, field);
        if (value == nullptr)
            return nullptr;
        if (!value->is_object()) {
            fail(field, "an object", *value);
            return nullptr;
        }
        group_ = fmt::format("{}.", field);
        return value;
    }

    std::string text(const Json& from, std::string_view field) {
        const Json* value = find(from, field);
        if (value == nullptr)
            return {};
        if (!value->is_string()) {
            fail(field, "a text", *value);
            return {};
        }
        return value->get<std::string>();
    }

    float number(const Json& value, std::string_view field, Range range) {
        const double parsed = value.is_number() ? value.get<double>() : std::nan("");
        if (!(parsed >= range.least && parsed <= range.most)) {
            fail(field, fmt::format("a number from {} to {}", range.least, range.most), value);
            return 0.0F;
        }
        return static_cast<float>(parsed);
    }

    float number(const Json& from, std::string_view field, Range range, float absent) {
        const Json* value = find(from, field);
        return value == nullptr ? absent : number(*value, field, range);
    }

    glm::vec3 vector(std::string_view field, Range range, const glm::vec3& absent) {
        const Json* value = find(json_, field);
        if (value == nullptr)
            return absent;
        if (!value->is_array() || value->size() != 3) {
            fail(field, "a list of three numbers", *value);
            return absent;
        }
        return {number((*value)[0], field, range), number((*value)[1], field, range),
                number((*value)[2], field, range)};
    }

    template <typename Enum, std::size_t Size>
    Enum choice(const Json& from, std::string_view field, const std::array<std::string_view, Size>& names) {
        const Json* value = find(from, field);
        if (value == nullptr)
            return Enum{};
        for (std::size_t index = 0; index < names.size(); ++index)
            if (*value == names[index])
                return static_cast<Enum>(index);
        fail(field, fmt::format("one of {}", fmt::join(names, ", ")), *value);
        return Enum{};
    }

    Colour colour(const Json& from) {
        const Json* value = find(from, "colour");
        if (value == nullptr)
            return {};
        const std::string hex = value->is_string() ? value->get<std::string>() : std::string();
        std::uint32_t rgb = 0;
        const auto [end, code] =
            std::from_chars(hex.data() + (hex.empty() ? 0 : 1), hex.data() + hex.size(), rgb, 16);
        if (hex.size() != 7 || hex[0] != '#' || code != std::errc() || end != hex.data() + hex.size()) {
            fail("colour", "a colour like \"#3366ff\"", *value);
            return {};
        }
        const auto channel = [rgb](unsigned shift) {
            return static_cast<std::uint8_t>((rgb >> shift) & 0xFFU);
        };
        return {channel(16), channel(8), channel(0)};
    }

    const Json& json_;
    std::string group_; // "light." while the fields of the light are read
    std::string error_;
};

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

std::expected<Entity, std::string> readEntity(const Json& json, std::size_t index) {
    EntityReader reader(json);
    Entity entity = reader.read();
    if (!reader.error().empty())
        return std::unexpected(fmt::format("entities[{}] \"{}\": {}", index, entity.name, reader.error()));
    return entity;
}

} // namespace

std::expected<Scene, Error> loadScene(const fs::path& file) {
    const auto json = readJsonFile(file);
    if (!json)
        return std::unexpected(json.error());
    const auto wrong = [&](std::string_view what) {
        return makeError("{}: {}", paths::toUtf8(file), what);
    };
    const auto name = json->find("name");
    if (name != json->end() && !name->is_string())
        return wrong(fmt::format("\"name\" must be a text, not {}", name->type_name()));
    Scene scene(name == json->end() ? paths::toUtf8(file.stem()) : name->get<std::string>());
    const auto entities = json->find("entities");
    if (entities == json->end())
        return wrong("the list \"entities\" is missing");
    if (!entities->is_array())
        return wrong(fmt::format("\"entities\" must be a list, not {}", entities->type_name()));
    scene.reserve(entities->size());
    for (const Json& each : *entities) {
        auto entity = readEntity(each, scene.size());
        if (!entity)
            return wrong(entity.error());
        scene.add(*std::move(entity));
    }
    return scene;
}

std::expected<void, Error> saveScene(const Scene& scene, const fs::path& file) {
    Json entities = Json::array();
    for (std::size_t index = 0; index < scene.size(); ++index) {
        Json json = toJson(scene.entity(index));
        // What is saved can be loaded again: a value that loading refuses, such as infinity, stays out.
        if (const auto readBack = readEntity(json, index); !readBack)
            return makeError("cannot write {}: {}", paths::toUtf8(file), readBack.error());
        entities.push_back(std::move(json));
    }
    return writeJsonFile(file, Json{{"name", scene.name()}, {"entities", std::move(entities)}});
}

} // namespace tarvik
