#include "Drawing.hpp"

#include <tarvik/scene/CameraView.hpp>

#include <glm/geometric.hpp>
#include <glm/gtc/quaternion.hpp>
#include <glm/matrix.hpp>
#include <glm/vec4.hpp>

#include <algorithm>
#include <cstdlib>

namespace tarvik {
namespace {

using test::entityOf;

constexpr Colour kRed{230, 40, 40};
constexpr Colour kGreen{40, 200, 60};
constexpr Colour kGrey{150, 150, 150};

struct Pixel {
    int red;
    int green;
    int blue;
    int alpha;
    [[nodiscard]] int brightness() const { return red + green + blue; }
};

Pixel at(const render::CapturedImage& image, std::uint32_t x, std::uint32_t y) {
    const std::uint8_t* pixel = image.pixels.data() + (std::size_t{y} * image.width + x) * 4;
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

bool isRed(const Pixel& pixel) {
    return pixel.red > 60 && pixel.red > 2 * pixel.green && pixel.red > 2 * pixel.blue;
}

bool isBackground(const Pixel& pixel) {
    return pixel.brightness() < 200 && std::abs(pixel.red - pixel.blue) < 25;
}

class CaptureTest : public test::DrawingTest {
protected:
    CaptureTest() { start({.enableValidation = true}); }

    render::CapturedImage capture(const Scene& scene, VkExtent2D extent,
                                  const glm::vec3& eye = {0.0F, 0.0F, 3.0F},
                                  const render::RenderSettings& settings = {.grid = false}) {
        const float aspect = static_cast<float>(extent.width) / static_cast<float>(extent.height);
        const auto image = renderer_->capture(scene, lookAt(eye, {}, 0.8F, aspect, 0.1F), extent, settings);
        if (!image)
            throw std::runtime_error(image.error().message);
        return *image;
    }
};

// How close the ray through the middle of a pixel passes to the world's origin.
float closestToOrigin(const CameraView& view, VkExtent2D extent, std::uint32_t x, std::uint32_t y) {
    const glm::vec2 ndc = (glm::vec2(x, y) + 0.5F) / glm::vec2(extent.width, extent.height) * 2.0F - 1.0F;
    const glm::vec4 point = glm::inverse(view.projection * view.view) * glm::vec4(ndc, 0.5F, 1.0F);
    const glm::vec3 direction = glm::normalize(glm::vec3(point) / point.w - view.position);
    return glm::length(glm::cross(direction, view.position));
}

TEST_F(CaptureTest, ShowsASphereWhereTheCameraSeesItAtEverySize) {
    Scene scene("sphere");
    scene.add(entityOf(Mesh::Sphere, kRed));
    const glm::vec3 eye{1.0F, 0.7F, 3.0F};
    // Wide, tall, and larger than what is drawn at once in one direction and in both.
    EXPECT_EQ(capture(scene, {1, 1}, eye).pixels.size(), 4U);
    for (const VkExtent2D extent : {VkExtent2D{320, 180}, {17, 33}, {2049, 65}, {2060, 2100}}) {
        const auto image = capture(scene, extent, eye);
        ASSERT_EQ(image.pixels.size(), std::size_t{4} * extent.width * extent.height);
        const CameraView view =
            lookAt(eye, {}, 0.8F, static_cast<float>(extent.width) / static_cast<float>(extent.height), 0.1F);
        for (std::uint32_t y = 0; y < extent.height; y += extent.height / 61 + 1) {
            for (std::uint32_t x = 0; x < extent.width; x += extent.width / 61 + 1) {
                const float distance = closestToOrigin(view, extent, x, y);
                const Pixel pixel = at(image, x, y);
                EXPECT_EQ(pixel.alpha, 255);
                const bool edge = distance > 0.47F && distance < 0.53F; // a mixture
                ASSERT_TRUE(edge || (distance < 0.5F ? isRed(pixel) : isBackground(pixel)))
                    << x << ", " << y << " of " << extent.width << " x " << extent.height;
            }
        }
    }
}

TEST_F(CaptureTest, TheNearerThingHidesTheFartherInEitherOrder) {
    for (const float first : {1.0F, -1.0F}) {
        Scene scene("depth");
        for (const float z : {first, -first})
            scene.add(entityOf(Mesh::Cube, z > 0.0F ? kRed : kGreen, {0.0F, 0.0F, z}));
        EXPECT_TRUE(isRed(at(capture(scene, {64, 64}), 32, 32)));
    }
}

TEST_F(CaptureTest, LightFallsOnTheSideThatFacesItAndFlatteningTurnsNormalsUpwards) {
    const glm::quat towardsLeft = glm::angleAxis(1.5708F, glm::vec3(0.0F, 1.0F, 0.0F)); // along -x
    const auto rightMinusLeft = [&](const glm::vec3& scale, const glm::vec3& eye) {
        Scene scene("lit");
        scene.add(entityOf(Mesh::Sphere, kGrey, {}, scale));
        scene.add({.transform = {.rotation = towardsLeft}, .light = Light{}});
        const auto image = capture(scene, {64, 64}, eye);
        return at(image, 40, 32).brightness() - at(image, 24, 32).brightness();
    };
    EXPECT_GT(rightMinusLeft(glm::vec3(1.0F), {0.0F, 0.0F, 3.0F}), 60);
    EXPECT_LT(std::abs(rightMinusLeft({2.0F, 0.04F, 2.0F}, {0.0F, 3.0F, 0.01F})), 40);
}

TEST_F(CaptureTest, TheFinalPictureShowsNeitherGridNorSelection) {
    Scene scene("cube");
    scene.add(entityOf(Mesh::Cube, kGreen));
    const auto pixels = [&](const render::RenderSettings& settings) {
        return capture(scene, {160, 90}, {3.0F, 4.0F, 5.0F}, settings).pixels;
    };
    const auto plain = pixels({.grid = false});
    EXPECT_NE(pixels({.grid = true}), plain);
    EXPECT_NE(pixels({.grid = false, .selected = 0}), plain);
    EXPECT_EQ(pixels({.finalPicture = true, .grid = true, .selected = 0}), plain);
}

TEST_F(CaptureTest, TenThousandEntitiesAndMoreLightsThanFitAreDrawn) {
    Scene scene("crowd");
    for (int i = 0; i < 10'000; ++i) {
        Entity entity = entityOf(static_cast<Mesh>(1 + i % 4), kRed, {i % 100 - 50, i / 100 - 50, -60});
        if (i % 100 == 0)
            entity.light = Light{.kind = LightKind::Point, .intensity = 0.05F};
        scene.add(std::move(entity));
    }
    // Nine tenths of the picture; each kind of mesh shows in about a quarter of it.
    const auto image = capture(scene, {100, 100});
    int red = 0;
    for (std::uint32_t pixel = 0; pixel < 100 * 100; ++pixel)
        red += isRed(at(image, pixel % 100, pixel / 100)) ? 1 : 0;
    EXPECT_GT(red, 8500);
}

} // namespace
} // namespace tarvik
