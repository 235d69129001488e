#include <tarvik/scene/Picking.hpp>

#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x4.hpp>
#include <glm/matrix.hpp>
#include <glm/vec4.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarvik {

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

// The part of a ray that lies within a shape, as distances along it.
struct Span {
    float enter = -kInfinity;
    float leave = kInfinity;
};
constexpr Span kNowhere{kInfinity, -kInfinity};

Span both(const Span& a, const Span& b) {
    return {std::max(a.enter, b.enter), std::min(a.leave, b.leave)};
}

// Between two planes at the same distance from the origin. A ray within the planes themselves sees them
// edge-on, which is not at all.
Span betweenPlanes(float origin, float direction, float half) {
    if (direction == 0.0F)
        return std::abs(origin) < half ? Span{} : kNowhere;
    const float a = (-half - origin) / direction;
    const float b = (half - origin) / direction;
    return {std::min(a, b), std::max(a, b)};
}

// No farther than half a unit from the origin: a ball, or, in a plane, an endless cylinder.
Span aroundOrigin(const glm::vec3& origin, const glm::vec3& direction) {
    const float squaredSpeed = glm::dot(direction, direction);
    if (squaredSpeed == 0.0F)
        return glm::dot(origin, origin) < 0.25F ? Span{} : kNowhere;
    const float nearest = -glm::dot(origin, direction) / squaredSpeed;
    const glm::vec3 closest = origin + nearest * direction;
    const float squaredHalf = 0.25F - glm::dot(closest, closest);
    if (squaredHalf < 0.0F)
        return kNowhere;
    const float half = std::sqrt(squaredHalf / squaredSpeed);
    return {nearest - half, nearest + half};
}

// In the space of the unit primitives, where the direction is as long as a metre of the world is there.
Span within(Mesh mesh, const glm::vec3& origin, const glm::vec3& direction) {
    const auto slab = [&](int axis, float half) {
        return betweenPlanes(origin[axis], direction[axis], half);
    };
    const glm::vec3 flat(1.0F, 0.0F, 1.0F);
    switch (mesh) {
    case Mesh::Cube:
        return both(both(slab(0, 0.5F), slab(1, 0.5F)), slab(2, 0.5F));
    case Mesh::Sphere:
        return aroundOrigin(origin, direction);
    case Mesh::Cylinder:
        return both(slab(1, 0.5F), aroundOrigin(origin * flat, direction * flat));
    case Mesh::Plane:
        return both(both(slab(0, 0.5F), slab(1, 0.0F)), slab(2, 0.5F));
    case Mesh::None:
        break;
    }
    return kNowhere;
}

} // namespace

Ray rayThrough(const CameraView& view, const glm::vec2& ndc) {
    // Without the translation, which far from the world's origin would cost the direction its precision.
    const glm::mat4 fromClip = glm::inverse(view.projection * glm::mat4(glm::mat3(view.view)));
    const glm::vec4 onNearPlane = fromClip * glm::vec4(ndc, 1.0F, 1.0F);
    const glm::vec3 offset = glm::vec3(onNearPlane) / onNearPlane.w;
    return {view.position + offset, glm::normalize(offset)};
}

std::optional<std::size_t> pick(const Scene& scene, const Ray& ray) {
    constexpr float kThinnest = 1e-6F; // a scale of zero would divide by it
    std::optional<std::size_t> hit;
    float nearest = kInfinity;
    for (std::size_t i = 0; i < scene.size(); ++i) {
        const Transform& transform = scene.transforms()[i];
        const glm::quat toLocal = glm::conjugate(transform.rotation);
        const glm::vec3 scale = glm::max(glm::abs(transform.scale), kThinnest);
        const Span span = within(scene.meshes()[i], toLocal * (ray.origin - transform.position) / scale,
                                 toLocal * ray.direction / scale);
        if (span.enter >= 0.0F && span.enter <= span.leave && span.enter < nearest) {
            nearest = span.enter;
            hit = i;
        }
    }
    return hit;
}

} // namespace tarvik
