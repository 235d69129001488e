#include "CameraControls.hpp"
#include "Entities.hpp"

#include <tarvik/app/AppOptions.hpp>

#include <glm/geometric.hpp>
#include <glm/mat3x3.hpp>
#include <glm/vec4.hpp>
#include <gtest/gtest.h>

#include <algorithm>

namespace tarvik::editor {
namespace {

constexpr float kAspect = 1.5F;

glm::vec3 ahead(const CameraView& view) {
    return {-view.view[0][2], -view.view[1][2], -view.view[2][2]};
}

glm::vec3 up(const CameraView& view) {
    return {view.view[0][1], view.view[1][1], view.view[2][1]};
}

// The greatest difference in where and how two views look.
float difference(const CameraView& a, const CameraView& b) {
    return std::max({glm::distance(a.position, b.position), glm::distance(ahead(a), ahead(b)),
                     glm::distance(up(a), up(b))});
}

glm::vec2 seenAt(const CameraView& view, const glm::vec3& point) {
    const glm::vec4 clip = view.projection * view.view * glm::vec4(point, 1.0F);
    return glm::vec2(clip) / clip.w;
}

// Frames, as the viewport makes them.
class CameraTest : public testing::Test {
protected:
    CameraTest() {
        scene_.add(test::entityOf(Mesh::Cube, {}, {3.0F, 1.0F, -2.0F}));
        startFrom({.still = true});
    }

    void startFrom(const app::AppOptions& options) {
        controls_ = CameraControls(options);
        controls_.show(&scene_, Viewpoint::New);
        frame();
    }

    CameraView frame(float seconds = 0.02F, bool windowActive = true) {
        controls_.update(seconds, input_, windowActive);
        input_.endFrame();
        return controls_.view(kAspect);
    }

    Scene scene_{"box"};
    InputState input_;
    CameraControls controls_{{}};
};

TEST_F(CameraTest, CirclesUntilTheFirstTouchAndIsTakenOverWhereItIs) {
    for (const char* eye : {"", "1,9,1", "3,50,-2", "3,-50,-2"}) { // the last two look down and up
        SCOPED_TRACE(eye);
        startFrom({.cameraEye = eye});
        const CameraView before = frame(2.0F);
        EXPECT_GT(difference(before, frame(2.0F)), 0.01F);
        const CameraView last = frame();
        input_.addMouseDelta({90.0F, 50.0F}); // on the way to the press
        input_.setMouseButton(MouseButton::Right, true);
        EXPECT_LT(difference(last, frame(2.0F)), 0.005F) << "no jump, and no more circling";
        input_.setMouseButton(MouseButton::Right, false);
        EXPECT_LT(difference(last, frame(2.0F)), 0.005F) << "taken over for good";
    }
}

TEST_F(CameraTest, KeysMoveItOnlyInMouseLookAndInAnActiveWindow) {
    for (const Key key : {Key::W, Key::A, Key::S, Key::D, Key::Q, Key::E}) {
        controls_.show(&scene_, Viewpoint::New);
        const CameraView start = frame(0.0F);
        input_.setKey(key, true);
        EXPECT_LT(difference(start, frame()), 1e-5F);
        input_.setMouseButton(MouseButton::Right, true);
        EXPECT_LT(difference(start, frame(0.02F, false)), 1e-5F);
        EXPECT_GT(difference(start, frame()), 0.05F) << static_cast<int>(key);
        input_.releaseAll();
    }
}

TEST_F(CameraTest, FliesAsFarInOneSecondAtEveryFrameRate) {
    const auto flown = [&](int frames) {
        controls_.show(&scene_, Viewpoint::New);
        input_.setMouseButton(MouseButton::Right, true);
        for (const Key key : {Key::W, Key::D, Key::E, Key::Shift})
            input_.setKey(key, true);
        CameraView view;
        for (int i = 0; i < frames; ++i)
            view = frame(1.0F / static_cast<float>(frames));
        return view.position;
    };
    EXPECT_LT(glm::distance(flown(10), flown(1000)), 0.01F);
}

TEST_F(CameraTest, NeitherFlipsNorRollsWhenDraggedBeyondThePoles) {
    for (const float direction : {-1.0F, 1.0F}) {
        input_.setMouseButton(MouseButton::Right, true);
        const float startsAside = ahead(frame()).x;
        CameraView view;
        for (int i = 0; i < 200; ++i) {
            input_.addMouseDelta({0.0F, direction * 20.0F});
            view = frame();
            ASSERT_GE(up(view).y, -1e-4F) << "upside down";
            ASSERT_NEAR(view.view[1][0], 0.0F, 1e-4F) << "the horizon is level";
        }
        EXPECT_NEAR(ahead(view).y, -direction, 1e-4F) << "straight up or down";
        EXPECT_EQ(startsAside < 0.0F, up(view).x * direction < 0.0F) << "still turned to the same side";
        input_.releaseAll();
        controls_.show(&scene_, Viewpoint::New);
    }
}

TEST_F(CameraTest, WhatIsFramedIsOrbitedInTheMiddleAndPannedWithThePointer) {
    const glm::vec3 pivot{-5.0F, 2.0F, 9.0F};
    for (const float radius : {0.001F, 1.0F, 1000.0F}) {
        SCOPED_TRACE(radius);
        controls_.frame({pivot, radius});
        const CameraView framed = frame();
        const float edge = seenAt(framed, pivot + radius * up(framed)).y;
        EXPECT_TRUE(edge < 0.0F && edge > -1.0F) << edge;
        const float distance = glm::distance(framed.position, pivot);
        EXPECT_GT(distance, radius + Camera{}.nearPlane);

        controls_.pointerAt({}, Qt::AltModifier);
        input_.setMouseButton(MouseButton::Left, true);
        frame(0.0F);
        input_.addMouseDelta({150.0F, -40.0F});
        const CameraView orbited = frame();
        EXPECT_GT(glm::distance(ahead(framed), ahead(orbited)), 0.5F);
        EXPECT_LT(glm::length(seenAt(orbited, pivot)), 1e-3F);
        EXPECT_NEAR(glm::distance(orbited.position, pivot) / distance, 1.0F, 1e-3F);
        input_.releaseAll();

        controls_.pointerAt({0.1F, 0.1F}, {}); // no drag yet
        input_.setMouseButton(MouseButton::Middle, true);
        frame(0.0F);
        controls_.pointerAt({0.5F, -0.2F}, {});
        const glm::vec2 panned = seenAt(frame(), pivot);
        EXPECT_LT(glm::distance(panned, {0.4F, -0.3F}), 2e-3F) << panned.x << ' ' << panned.y;
        input_.releaseAll();
    }
}

TEST_F(CameraTest, TheWheelSetsTheSpeedInMouseLookAndElseTheDistance) {
    input_.addScroll(3.0F);
    const CameraView start = controls_.seen();
    const CameraView nearer = frame();
    EXPECT_GT(glm::dot(nearer.position - start.position, ahead(start)), 0.5F);
    input_.setMouseButton(MouseButton::Right, true);
    input_.addScroll(-3.0F);
    EXPECT_EQ(difference(nearer, frame()), 0.0F);
}

} // namespace
} // namespace tarvik::editor
