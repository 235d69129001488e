#include "Geometry.hpp"

#include <glm/geometric.hpp>
#include <glm/gtc/constants.hpp>

#include <cmath>

namespace tarvik::render {

namespace {

struct Detail {
    std::uint32_t segments; // around an axis
    std::uint32_t rings;    // of a sphere, from pole to pole
};
constexpr Detail kFull{40, 24};
constexpr Detail kCoarse{14, 8};

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
    MeshRange range(Fill fill) {
        const auto first = static_cast<std::uint32_t>(geometry_.indices.size());
        fill(*this);
        return {first, static_cast<std::uint32_t>(geometry_.indices.size()) - first};
    }

    void set(Mesh mesh, const MeshRange& full, const MeshRange& coarse) {
        geometry_.meshes[static_cast<std::size_t>(mesh)] = {full, coarse};
    }

    Geometry take() { return std::move(geometry_); }

private:
    Geometry geometry_;
};

constexpr glm::vec3 kX{1.0F, 0.0F, 0.0F};
constexpr glm::vec3 kY{0.0F, 1.0F, 0.0F};
constexpr glm::vec3 kZ{0.0F, 0.0F, 1.0F};

// The direction in the xz plane of one of the steps around y, from z towards x.
glm::vec3 around(std::uint32_t segment, std::uint32_t segments) {
    const float angle =
        glm::two_pi<float>() * static_cast<float>(segment % segments) / static_cast<float>(segments);
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

void sphere(Builder& build, Detail detail) {
    std::vector<std::uint32_t> ring(detail.segments + 1);
    std::vector<std::uint32_t> above;
    for (std::uint32_t i = 0; i <= detail.rings; ++i) {
        const float angle = glm::pi<float>() * static_cast<float>(i) / static_cast<float>(detail.rings);
        for (std::uint32_t j = 0; j <= detail.segments; ++j) {
            const glm::vec3 direction = std::cos(angle) * kY + std::sin(angle) * around(j, detail.segments);
            ring[j] = build.vertex(0.5F * direction, direction);
        }
        for (std::uint32_t j = 0; i > 0 && j < detail.segments; ++j) {
            if (i < detail.rings)
                build.triangle(above[j], ring[j], ring[j + 1]);
            if (i > 1)
                build.triangle(above[j], ring[j + 1], above[j + 1]);
        }
        above = ring;
    }
}

void cylinder(Builder& build, Detail detail) {
    const std::uint32_t top = build.vertex(0.5F * kY, kY);
    const std::uint32_t bottom = build.vertex(-0.5F * kY, -kY);
    for (std::uint32_t j = 0; j < detail.segments; ++j) {
        const glm::vec3 left = around(j, detail.segments);
        const glm::vec3 right = around(j + 1, detail.segments);
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
    const MeshRange box = build.range(cube);
    build.set(Mesh::Cube, box, box);
    const auto ball = [&](Detail detail) {
        return build.range([&](Builder& b) { sphere(b, detail); });
    };
    build.set(Mesh::Sphere, ball(kFull), ball(kCoarse));
    const auto column = [&](Detail detail) {
        return build.range([&](Builder& b) { cylinder(b, detail); });
    };
    build.set(Mesh::Cylinder, column(kFull), column(kCoarse));
    const MeshRange flat = build.range([](Builder& b) { b.square({}, kX, -kZ); });
    build.set(Mesh::Plane, flat, flat);
    return build.take();
}

} // namespace tarvik::render
