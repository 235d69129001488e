#include "OpeningView.hpp"

#include "CommandLine.hpp"
#include "EntityBounds.hpp"

#include <glm/geometric.hpp>
#include <glm/gtc/constants.hpp>
#include <glm/gtc/quaternion.hpp>

#include <algorithm>
#include <cmath>

namespace tarvik::editor {
namespace {

constexpr glm::vec3 kUp{0.0F, 1.0F, 0.0F};
constexpr float kTurnSeconds = 75.0F; // one full circle
constexpr float kOutside = 2.2F;      // in radii of the bounds

// Wide around the things of the scene, so that a camera that circles it stays outside. The ground may be
// crossed.
Sphere surroundingsOf(const Scene& scene) {
    glm::vec3 low{0.0F};
    glm::vec3 high{0.0F};
    bool any = false;
    for (std::size_t i = 0; i < scene.size(); ++i) {
        const Mesh mesh = scene.meshes()[i];
        if (mesh == Mesh::None || mesh == Mesh::Plane)
            continue;
        const Transform& transform = scene.transforms()[i];
        const glm::vec3 reach(0.5F * glm::length(transform.scale));
        low = any ? glm::min(low, transform.position - reach) : transform.position - reach;
        high = any ? glm::max(high, transform.position + reach) : transform.position + reach;
        any = true;
    }
    if (!any)
        return {};
    return {0.5F * (low + high), std::max(0.5F * glm::length(high - low), 0.5F)};
}

// A camera that looks straight up or down has no horizon to keep: tilt it a little.
glm::vec3 tilted(const glm::vec3& eye, const glm::vec3& target) {
    const glm::vec3 arm = eye - target;
    const float length = glm::length(arm);
    if (std::hypot(arm.x, arm.z) > 0.001F * length)
        return eye;
    return eye + glm::vec3(0.0F, 0.0F, std::max(0.002F * length, 0.01F));
}

} // namespace

OpeningView::OpeningView(const app::AppOptions& options)
    : chosenEye_(parsePoint(options.cameraEye)),
      chosenTarget_(parsePoint(options.cameraTarget)),
      play_(options.play),
      still_(options.still) {
    show(nullptr);
}

void OpeningView::show(const Scene* scene) {
    const Sphere bounds = scene ? surroundingsOf(*scene) : Sphere{};
    target_ = bounds.centre;
    lens_ = {};
    eye_ = bounds.centre + kOutside * bounds.radius * glm::normalize(glm::vec3(0.8F, 0.5F, 1.0F));
    circling_ = !still_;
    angle_ = 0.0F;
    if (scene && !scene->cameras().empty()) {
        const auto& [entity, camera] = scene->cameras().front();
        const Transform& place = scene->transforms()[entity];
        const glm::vec3 forward = place.rotation * glm::vec3(0.0F, 0.0F, -1.0F);
        // The point the camera looks at that is nearest to the middle of things.
        const float distance = glm::dot(bounds.centre - place.position, forward);
        eye_ = place.position;
        target_ = eye_ + std::max(distance, 1.0F) * forward;
        lens_ = camera;
        circling_ = circling_ && !play_;
    }
    eye_ = chosenEye_.value_or(eye_);
    target_ = chosenTarget_.value_or(target_);
    if (glm::distance(eye_, target_) < 0.001F)
        eye_ = target_ + glm::vec3(0.0F, 0.0F, 1.0F);
    eye_ = tilted(eye_, target_);
    // A camera placed within the scene would circle through walls and trees: move out on the way.
    const float outside = chosenEye_ ? 0.0F : kOutside * bounds.radius;
    farFactor_ = std::max(outside / glm::distance(eye_, target_), 1.0F);
}

void OpeningView::advance(float seconds) {
    if (circling_)
        angle_ = std::fmod(angle_ + seconds * glm::two_pi<float>() / kTurnSeconds, glm::two_pi<float>());
}

CameraView OpeningView::view(float aspect) const {
    return lookAt(target_ + arm(), target_, lens_.fovY, aspect, lens_.nearPlane);
}

float OpeningView::distance() const {
    return glm::length(arm());
}

glm::vec3 OpeningView::arm() const {
    const float otherSide = std::pow(std::sin(0.5F * angle_), 2.0F);
    return std::lerp(1.0F, farFactor_, otherSide) * (glm::angleAxis(angle_, kUp) * (eye_ - target_));
}

} // namespace tarvik::editor
