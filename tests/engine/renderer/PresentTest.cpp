// The renderer keeps the entry points that it loads to itself.
#define VK_USE_PLATFORM_XCB_KHR
#define VOLK_IMPLEMENTATION
#include <volk.h>

#include "Drawing.hpp"
#include "TemporaryFolder.hpp"

#include <tarvik/renderer/Errors.hpp>
#include <tarvik/renderer/PresentTarget.hpp>
#include <tarvik/scene/CameraView.hpp>

#include <atomic>
#include <chrono>
#include <cstdlib>

namespace tarvik {

namespace test {
extern std::atomic<int> allocations; // so far
}

namespace {

using Clock = std::chrono::steady_clock;
using render::FrameResult;

// A bare X window with a Vulkan surface.
class Window final {
public:
    explicit Window(VkInstance instance)
        : instance_(instance),
          connection_(xcb_connect(nullptr, nullptr)),
          window_(xcb_generate_id(connection_)) {
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, 0, 0, 320, 200, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        xcb_map_window(connection_, window_);
        sync();
        volkInitialize();
        volkLoadInstanceOnly(instance_);
        const VkXcbSurfaceCreateInfoKHR info{.sType = VK_STRUCTURE_TYPE_XCB_SURFACE_CREATE_INFO_KHR,
                                             .connection = connection_,
                                             .window = window_};
        vkCreateXcbSurfaceKHR(instance_, &info, nullptr, &surface_);
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window() {
        vkDestroySurfaceKHR(instance_, surface_, nullptr);
        xcb_disconnect(connection_);
    }

    void resize(std::uint32_t width, std::uint32_t height) {
        const std::uint32_t size[]{width, height};
        xcb_configure_window(connection_, window_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
        sync();
    }
    void destroy() {
        xcb_destroy_window(connection_, window_);
        sync();
    }
    [[nodiscard]] VkSurfaceKHR surface() const { return surface_; }

private:
    void sync() {
        std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }

    VkInstance instance_;
    xcb_connection_t* connection_;
    xcb_window_t window_;
    VkSurfaceKHR surface_ = VK_NULL_HANDLE;
};

class PresentTest : public test::DrawingTest {
protected:
    PresentTest() { scene_.add(test::entityOf(Mesh::Sphere, {200, 40, 40})); }
    ~PresentTest() override {
        renderer_->waitIdle();
        target_.reset();
        window_.reset();
    }

    void open(render::RenderContextConfig config = {.enableValidation = true}) {
        config.instanceExtensions = {"VK_KHR_surface", "VK_KHR_xcb_surface"};
        start(config);
        window_ = std::make_unique<Window>(context_->vkInstance());
        makeTarget();
    }
    void makeTarget() {
        target_.reset();
        target_ = std::make_unique<render::PresentTarget>(*context_, window_->surface(), VkExtent2D{320, 200},
                                                          rhi::PresentPolicy::Vsync);
    }

    FrameResult render() { return renderer_->render(*target_, scene_, view_, {}); }
    // Draws until a frame ends like that.
    bool renderUntil(FrameResult wanted) {
        const auto deadline = Clock::now() + std::chrono::seconds(30);
        while (Clock::now() < deadline)
            if (render() == wanted)
                return true;
        return false;
    }

    // Layer upon layer, the farthest first, so that every one is drawn.
    void drawSlowly(int layers) {
        view_ = lookAt({0.0F, 3.0F, 0.1F}, {}, 0.8F, 1.6F, 0.1F);
        for (int i = 0; i < layers; ++i)
            scene_.add(test::entityOf(Mesh::Plane, {200, 40, 40}, {0.0F, 0.01F * static_cast<float>(i), 0.0F},
                                      {10.0F, 1.0F, 10.0F}));
    }

    Scene scene_{"sphere"};
    CameraView view_ = lookAt({1.0F, 1.0F, 3.0F}, {}, 0.8F, 1.6F, 0.1F);
    std::unique_ptr<Window> window_;
    std::unique_ptr<render::PresentTarget> target_;
};

TEST_F(PresentTest, KeepsPresentingThroughAStormOfSizesPoliciesAndTargets) {
    open();
    EXPECT_TRUE(renderUntil(FrameResult::Presented));
    EXPECT_TRUE(target_->swapchain().presentBlocks());
    target_->setPolicy(rhi::PresentPolicy::NoVsync);
    EXPECT_TRUE(renderUntil(FrameResult::Presented));
    EXPECT_FALSE(target_->swapchain().presentBlocks());
    for (std::uint32_t i = 1; i <= 40; ++i) {
        const std::uint32_t width = 1 + (i * 97) % 500;
        const std::uint32_t height = 1 + (i * 61) % 300;
        window_->resize(width, height);
        if (i % 3 != 0) // else the surface says so itself
            target_->resize({width, height});
        if (i % 5 == 0)
            target_->setPolicy(i % 2 == 0 ? rhi::PresentPolicy::Vsync : rhi::PresentPolicy::NoVsync);
        if (i % 20 == 0) // without waiting for the device
            makeTarget();
        ASSERT_TRUE(renderUntil(FrameResult::Presented)) << i;
    }
}

TEST_F(PresentTest, AWindowThatIsGoneIsALostSurfaceAndEndsCleanly) {
    open();
    EXPECT_TRUE(renderUntil(FrameResult::Presented));
    window_->destroy();
    EXPECT_TRUE(renderUntil(FrameResult::SurfaceLost));
    target_->resize({100, 100});
    EXPECT_EQ(render(), FrameResult::SurfaceLost);
}

TEST_F(PresentTest, AFrameThatIsBrokenOffHarmsNoneThatFollows) {
    const test::TemporaryFolder shaders;
    test::writeText(shaders / "mesh.frag.spv", "no shader");
    open({.enableValidation = true, .shaderDirectory = shaders.path().wstring()});
    for (int i = 0; i < 2; ++i)
        EXPECT_THROW(render(), rhi::VulkanError);
    std::filesystem::remove(shaders / "mesh.frag.spv");
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(renderUntil(FrameResult::Presented));
}

TEST_F(PresentTest, ASlowPictureDoesNotHoldTheCaller) {
    open({.enableValidation = false});
    ASSERT_TRUE(renderUntil(FrameResult::Presented));
    drawSlowly(150);
    EXPECT_TRUE(renderUntil(FrameResult::Skipped));
    EXPECT_TRUE(renderUntil(FrameResult::Presented));
}

TEST_F(PresentTest, ASteadyFrameAllocatesNothing) {
    open({.enableValidation = false});
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(renderUntil(FrameResult::Presented));
    const int before = test::allocations;
    for (int i = 0; i < 10; ++i)
        renderUntil(FrameResult::Presented);
    EXPECT_EQ(test::allocations, before);
}

TEST_F(PresentTest, SlowTargetsTakeTurnsUntilOneIsDrawnToNoMore) {
    open({.enableValidation = false});
    drawSlowly(50);
    const Window window(context_->vkInstance());
    auto other = std::make_unique<render::PresentTarget>(*context_, window.surface(), VkExtent2D{320, 200},
                                                         rhi::PresentPolicy::Vsync);
    int left = 0;
    int right = 0;
    const auto deadline = Clock::now() + std::chrono::seconds(30);
    while ((left < 2 || right < 2) && Clock::now() < deadline) {
        left += render() == FrameResult::Presented ? 1 : 0;
        for (int i = 0; i < 2; ++i) // more often
            right += renderer_->render(*other, scene_, view_, {}) == FrameResult::Presented ? 1 : 0;
    }
    EXPECT_GE(left, 2);
    EXPECT_GE(right, 2);

    EXPECT_TRUE(renderUntil(FrameResult::Presented));
    std::swap(target_, other);
    EXPECT_TRUE(renderUntil(FrameResult::Skipped)); // drawn and not presented
    std::swap(target_, other);
    EXPECT_TRUE(renderUntil(FrameResult::Presented));
}

} // namespace
} // namespace tarvik
