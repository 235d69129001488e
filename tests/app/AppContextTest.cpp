#include "LogCapture.hpp"
#include "Script.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/core/Log.hpp>
#include <tarvik/renderer/Errors.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <new>

namespace tarvik::app {
namespace {

using scripted::script;
using scripted::throwing;
using test::Lines;

TEST(AppContextTest, StartsTheRendererOnFirstNeedAndEndsItBeforeTheLogIsLeft) {
    script() = {};
    script().extensions = {"VK_KHR_xlib_surface", "VK_EXT_debug_utils", "VK_KHR_xcb_surface",
                           "VK_KHR_surface2",     "VK_KHR_surface",     "VK_KHR_surface"};
    script().on["context-"] = [] {
        log::info("Test", "the context ends");
    };
    Lines received;
    {
        AppContext context({.validation = true, .gpu = 3});
        EXPECT_TRUE(context.validationEnabled());
        EXPECT_EQ(script().calls(), "");
        const auto* instance = context.vulkanInstance();
        EXPECT_TRUE(instance && context.renderer() && context.renderContext());
        EXPECT_EQ(script().details("context+"),
                  "VK_KHR_surface VK_KHR_xcb_surface VK_KHR_xlib_surface validation=true gpu=3");
        EXPECT_EQ(context.vulkanInstance(), instance);
        QObject::connect(context.logBridge.get(), &LogBridge::messageLogged, context.logBridge.get(),
                         [&](const UiLogEntry& entry) { received.push_back(entry.message.toStdString()); });
    }
    EXPECT_EQ(script().calls(), "extensions context+ renderer+ renderer- context-");
    log::info("Test", "after the end");
    EXPECT_EQ(received, Lines{"the context ends"});
}

TEST(AppContextTest, FailedStartIsToldOnceAndLeavesNothingBehind) {
    const auto expectFailure = [](const std::string& failing, const std::function<void()>& act,
                                  const std::string& reason, const std::string& calls) {
        SCOPED_TRACE(reason);
        script() = {};
        script().on[failing] = act;
        const test::LogCapture log;
        AppContext context({});
        EXPECT_FALSE(context.renderer() || context.renderContext() || context.vulkanInstance());
        EXPECT_EQ(context.rendererError().toStdString(), reason);
        EXPECT_EQ(log.lines(LogLevel::Error), Lines{"Vulkan initialisation failed: " + reason});
        EXPECT_EQ(script().calls(), calls);
    };
    expectFailure(
        "extensions",
        [] {
            script().extensions = {"VK_KHR_xcb_surface", "VK_KHR_win32_surface"};
        },
        "the Vulkan loader offers no VK_KHR_surface; cannot present to windows", "extensions");
    expectFailure("context+", throwing(rhi::UnsupportedHardwareError("kein Gerät")), "kein Gerät",
                  "extensions context+");
    expectFailure("renderer+", throwing(std::bad_alloc()), "std::bad_alloc",
                  "extensions context+ renderer+ context-");
}

} // namespace
} // namespace tarvik::app
