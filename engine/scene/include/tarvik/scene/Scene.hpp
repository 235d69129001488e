#pragma once

#include <tarvik/scene/Export.hpp>

#include <glm/gtc/quaternion.hpp>
#include <glm/vec3.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tarvik {

struct Transform {
    glm::vec3 position{0.0F}; // metres
    glm::quat rotation{1.0F, 0.0F, 0.0F, 0.0F};
    glm::vec3 scale{1.0F};
};

// Unit primitives: they fit the cube from -0.5 to 0.5; the cylinder stands along y, the plane lies in xz.
enum class Mesh : std::uint8_t { None, Cube, Sphere, Cylinder, Plane };
inline constexpr std::size_t kMeshCount = 5;

struct Colour { // sRGB
    std::uint8_t red = 255;
    std::uint8_t green = 255;
    std::uint8_t blue = 255;
    bool operator==(const Colour&) const = default;
};

enum class LightKind : std::uint8_t { Directional, Point };

// A directional light shines along its entity's -z; a point light from its entity's position.
struct Light {
    LightKind kind = LightKind::Directional;
    Colour colour;
    float intensity = 1.0F;
    float range = 10.0F; // metres at which a point light has faded to nothing
};

// Looks along its entity's -z.
struct Camera {
    float fovY = 0.9F; // radians
    float nearPlane = 0.1F;
};

struct Entity {
    std::string name;
    Transform transform;
    Mesh mesh = Mesh::None;
    Colour colour;
    std::optional<Light> light;
    std::optional<Camera> camera;
    std::string behaviour; // class name of its C++ behaviour, empty for none
};

// A list of entities, kept in columns: what a frame reads of every entity lies close together. An entity is
// known by its index.
class TARVIK_SCENE_API Scene final {
public:
    explicit Scene(std::string name);

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] std::size_t size() const { return transforms_.size(); }

    // Returns the new entity's index.
    std::size_t add(Entity entity);
    void reserve(std::size_t count);
    [[nodiscard]] Entity entity(std::size_t index) const; // a copy, put together from the columns

    [[nodiscard]] std::span<const Transform> transforms() const { return transforms_; }
    [[nodiscard]] std::span<Transform> transforms() { return transforms_; }
    [[nodiscard]] std::span<const Mesh> meshes() const { return meshes_; }
    [[nodiscard]] std::span<const Colour> colours() const { return colours_; }
    [[nodiscard]] const std::string& entityName(std::size_t index) const { return rest_[index].name; }
    [[nodiscard]] const std::string& behaviour(std::size_t index) const { return rest_[index].behaviour; }

    // How many entities have that mesh.
    [[nodiscard]] std::size_t count(Mesh mesh) const { return meshCounts_[static_cast<std::size_t>(mesh)]; }

    struct PlacedLight {
        std::size_t entity;
        Light light;
    };
    struct PlacedCamera {
        std::size_t entity;
        Camera camera;
    };
    [[nodiscard]] std::span<const PlacedLight> lights() const { return lights_; }
    [[nodiscard]] std::span<const PlacedCamera> cameras() const { return cameras_; }

private:
    struct Rest {
        std::string name;
        std::string behaviour;
    };

    std::string name_;
    std::vector<Transform> transforms_;
    std::vector<Mesh> meshes_;
    std::vector<Colour> colours_;
    std::vector<Rest> rest_;
    std::vector<PlacedLight> lights_;
    std::vector<PlacedCamera> cameras_;
    std::array<std::size_t, kMeshCount> meshCounts_{};
};

} // namespace tarvik
