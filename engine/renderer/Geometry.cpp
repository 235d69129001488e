#include "Geometry.hpp"

#include <glm/geometric.hpp>
#include <glm/gtc/constants.hpp>

#include <cmath>

namespace tarvik::render {

namespace {

constexpr std::uint32_t kSegments = 32; // around an axis
constexpr std::uint32_t kRings = 20;    // of a sphere, from pole to pole

class Builder final {
public:
    std::uint32_t vertex(const glm::vec3& position, const glm::vec3& normal) {
        geometry_.vertices.push_back({position, normal});
        return static_cast<std::uint32_t>(geometry_.vertices.size() - 1);
    }

    void triangle(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
        for (const std::uint32_t index : {a, b, c})
            geometry_.indices.push_back(static_cast<std::uint16_t>(index));
    }

    // Spanned by two sides of length one; right × up points outwards.
    void square(const glm::vec3& centre, const glm::vec3& right, const glm::vec3& up) {
        const glm::vec3 normal = glm::cross(right, up);
        const std::uint32_t a = vertex(centre - 0.5F * right - 0.5F * up, normal);
        const std::uint32_t b = vertex(centre + 0.5F * right - 0.5F * up, normal);
        const std::uint32_t c = vertex(centre + 0.5F * right + 0.5F * up, normal);
        const std::uint32_t d = vertex(centre - 0.5F * right + 0.5F * up, normal);
        triangle(a, b, c);
        triangle(a, c, d);
    }

    template <typename Fill>
    void mesh(Mesh mesh, Fill fill) {
        const auto first = static_cast<std::uint32_t>(geometry_.indices.size());
        fill();
        const auto end = static_cast<std::uint32_t>(geometry_.indices.size());
        geometry_.ranges[static_cast<std::size_t>(mesh)] = {first, end - first};
    }

    Geometry take() { return std::move(geometry_); }

private:
    Geometry geometry_;
};

constexpr glm::vec3 kX{1.0F, 0.0F, 0.0F};
constexpr glm::vec3 kY{0.0F, 1.0F, 0.0F};
constexpr glm::vec3 kZ{0.0F, 0.0F, 1.0F};

// The direction in the xz plane of one of kSegments steps around y, from z towards x.
glm::vec3 around(std::uint32_t segment) {
    const float angle =
        glm::two_pi<float>() * static_cast<float>(segment % kSegments) / static_cast<float>(kSegments);
    return std::sin(angle) * kX + std::cos(angle) * kZ;
}

void cube(Builder& build) {
    build.square(0.5F * kX, -kZ, kY);
    build.square(-0.5F * kX, kZ, kY);
    build.square(0.5F * kY, kX, -kZ);
    build.square(-0.5F * kY, kX, kZ);
    build.square(0.5F * kZ, kX, kY);
    build.square(-0.5F * kZ, -kX, kY);
}

void sphere(Builder& build) {
    std::vector<std::uint32_t> ring(kSegments + 1);
    std::vector<std::uint32_t> above;
    for (std::uint32_t i = 0; i <= kRings; ++i) {
        const float angle = glm::pi<float>() * static_cast<float>(i) / static_cast<float>(kRings);
        for (std::uint32_t j = 0; j <= kSegments; ++j) {
            const glm::vec3 direction = std::cos(angle) * kY + std::sin(angle) * around(j);
            ring[j] = build.vertex(0.5F * direction, direction);
        }
        for (std::uint32_t j = 0; i > 0 && j < kSegments; ++j) {
            if (i < kRings)
                build.triangle(above[j], ring[j], ring[j + 1]);
            if (i > 1)
                build.triangle(above[j], ring[j + 1], above[j + 1]);
        }
        above = ring;
    }
}

void cylinder(Builder& build) {
    const std::uint32_t top = build.vertex(0.5F * kY, kY);
    const std::uint32_t bottom = build.vertex(-0.5F * kY, -kY);
    for (std::uint32_t j = 0; j < kSegments; ++j) {
        const glm::vec3 left = around(j);
        const glm::vec3 right = around(j + 1);
        const auto corner = [&](const glm::vec3& side, const glm::vec3& end, const glm::vec3& normal) {
            return build.vertex(0.5F * side + 0.5F * end, normal);
        };
        const std::uint32_t a = corner(left, -kY, left);
        const std::uint32_t b = corner(right, -kY, right);
        const std::uint32_t c = corner(right, kY, right);
        const std::uint32_t d = corner(left, kY, left);
        build.triangle(a, b, c);
        build.triangle(a, c, d);
        build.triangle(top, corner(left, kY, kY), corner(right, kY, kY));
        build.triangle(bottom, corner(right, -kY, -kY), corner(left, -kY, -kY));
    }
}

} // namespace

Geometry makeGeometry() {
    Builder build;
    build.mesh(Mesh::Cube, [&] { cube(build); });
    build.mesh(Mesh::Sphere, [&] { sphere(build); });
    build.mesh(Mesh::Cylinder, [&] { cylinder(build); });
    build.mesh(Mesh::Plane, [&] { build.square({}, kX, -kZ); });
    return build.take();
}

} // namespace tarvik::render
