#include "CameraControls.hpp"

#include <tarvik/app/AppOptions.hpp>

#include <glm/geometric.hpp>
#include <glm/mat3x3.hpp>
#include <glm/vec4.hpp>
#include <gtest/gtest.h>

#include <cmath>

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
        Entity box;
        box.mesh = Mesh::Cube;
        box.transform.position = {3.0F, 1.0F, -2.0F};
        scene_.add(std::move(box));
        app::AppOptions standing;
        standing.still = true;
        startFrom(standing);
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
        app::AppOptions options;
        options.cameraEye = eye;
        startFrom(options);
        const CameraView before = frame(2.0F);
        EXPECT_GT(difference(before, frame(2.0F)), 0.01F);
        const CameraView last = frame();
        for (const MouseButton button : {MouseButton::Right, MouseButton::Middle}) {
            input_.setMouseButton(button, true);
            EXPECT_LT(difference(last, frame(2.0F)), 0.005F) << "no jump, and no more circling";
            input_.setMouseButton(button, false);
        }
        EXPECT_LT(difference(last, frame(2.0F)), 0.005F) << "taken over for good";
    }
}

TEST_F(CameraTest, MovesOfThePointerBeforeTheDragDoNotCount) {
    input_.setMouseButton(MouseButton::Left, true); // is not the camera's
    controls_.pointerAt({0.9F, 0.9F}, {});
    frame(0.0F);
    const CameraView last = frame(0.0F);
    input_.setMouseButton(MouseButton::Middle, true);
    EXPECT_LT(difference(last, frame()), 1e-4F);
}

TEST_F(CameraTest, KeysMoveItOnlyInMouseLookAndInAnActiveWindow) {
    input_.setMouseButton(MouseButton::Middle, true);
    const CameraView start = frame();
    for (const Key key : {Key::W, Key::A, Key::S, Key::D, Key::Q, Key::E}) {
        input_.setKey(key, true);
        EXPECT_EQ(difference(start, frame()), 0.0F);
        input_.setMouseButton(MouseButton::Right, true);
        EXPECT_EQ(difference(start, frame(0.02F, false)), 0.0F);
        const CameraView moved = frame();
        EXPECT_GT(difference(start, moved), 0.05F) << static_cast<int>(key);
        input_.setKey(key, false);
        input_.setMouseButton(MouseButton::Right, false);
        controls_.show(&scene_, Viewpoint::New);
        frame(0.0F);
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
    for (const bool orbiting : {false, true}) {
        for (const float direction : {-1.0F, 1.0F}) {
            input_.setMouseButton(orbiting ? MouseButton::Middle : MouseButton::Right, true);
            controls_.pointerAt({}, orbiting ? Qt::AltModifier : Qt::NoModifier);
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
}

TEST_F(CameraTest, FramingShowsAllOfItInTheMiddle) {
    for (const float radius : {0.001F, 1.0F, 1000.0F}) {
        const glm::vec3 centre{-5.0F, 2.0F, 9.0F};
        controls_.frame({centre, radius});
        const CameraView view = frame();
        EXPECT_LT(glm::length(seenAt(view, centre)), 1e-3F);
        const float edge = seenAt(view, centre + radius * up(view)).y;
        EXPECT_LT(edge, 0.0F);
        EXPECT_GT(edge, -1.0F);
        EXPECT_GT(glm::distance(view.position, centre), radius + Camera{}.nearPlane);
    }
}

TEST_F(CameraTest, PanningKeepsWhatIsUnderThePointerThere) {
    const glm::vec3 pivot{1.0F, 2.0F, 3.0F};
    controls_.frame({pivot, 2.0F});
    frame();
    input_.setMouseButton(MouseButton::Middle, true);
    controls_.pointerAt({0.1F, 0.1F}, {});
    frame(0.0F);
    const glm::vec2 before = seenAt(controls_.seen(), pivot);
    controls_.pointerAt({0.5F, -0.2F}, {});
    const glm::vec2 moved = seenAt(frame(), pivot) - before;
    EXPECT_NEAR(moved.x, 0.4F, 1e-3F);
    EXPECT_NEAR(moved.y, -0.3F, 1e-3F);
}

TEST_F(CameraTest, OrbitingLooksAtTheSamePointFromTheSameDistance) {
    const glm::vec3 pivot{1.0F, 2.0F, 3.0F};
    controls_.frame({pivot, 2.0F});
    const CameraView before = frame();
    controls_.pointerAt({}, Qt::AltModifier);
    input_.setMouseButton(MouseButton::Left, true);
    input_.addMouseDelta({150.0F, -40.0F});
    const CameraView after = frame();
    EXPECT_GT(difference(before, after), 0.5F);
    EXPECT_LT(glm::length(seenAt(after, pivot)), 1e-3F);
    EXPECT_NEAR(glm::distance(after.position, pivot), glm::distance(before.position, pivot), 1e-3F);
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

TEST_F(CameraTest, StaysInTheWorldWhateverItIsAsked) {
    input_.setMouseButton(MouseButton::Right, true);
    input_.setKey(Key::W, true);
    for (const float extreme : {1e4F, -1e4F}) {
        input_.addScroll(extreme);
        input_.addMouseDelta({extreme, extreme});
        frame(0.25F);
        controls_.frame({{}, extreme});
        input_.setMouseButton(MouseButton::Right, false);
        input_.addScroll(extreme);
        const CameraView view = frame(0.0F);
        for (int axis = 0; axis < 3; ++axis)
            EXPECT_TRUE(std::isfinite(view.position[axis]) && std::isfinite(view.view[axis][axis]));
    }
}

} // namespace
} // namespace tarvik::editor
