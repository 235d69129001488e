#include "TemporaryFolder.hpp"

#include <tarvik/renderer/Errors.hpp>
#include <tarvik/renderer/Instance.hpp>
#include <tarvik/renderer/RenderContext.hpp>

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

namespace tarvik {
namespace {

// The loader reads its environment once, so this runs in a process of its own.
[[noreturn]] void startAndExit() {
    try {
        (void)rhi::Instance::availableExtensions();
        const render::RenderContext context({});
    } catch (const rhi::UnsupportedHardwareError& error) {
        std::cerr << error.what();
        std::exit(3);
    }
    std::exit(0);
}

TEST(StartUpDeathTest, WithoutADriverSaysWhatToInstall) {
    const auto startWithoutDriver = [] {
        setenv("VK_DRIVER_FILES", "/nowhere.json", 1);
        setenv("VK_ICD_FILENAMES", "/nowhere.json", 1);
        startAndExit();
    };
    EXPECT_EXIT(startWithoutDriver(), ::testing::ExitedWithCode(3),
                "no Vulkan driver is installed.*mesa-vulkan-drivers");
}

TEST(StartUpDeathTest, WithoutALoaderSaysWhatToInstall) {
    // A library that cannot be loaded, found before the real one. Read when a process starts.
    const test::TemporaryFolder folder;
    for (const char* const name : {"libvulkan.so.1", "libvulkan.so"})
        test::writeText(folder / name, "no library");
    setenv("LD_LIBRARY_PATH", folder.path().c_str(), 1);
    EXPECT_EXIT(startAndExit(), ::testing::ExitedWithCode(3),
                "the Vulkan loader is not installed.*libvulkan1");
    unsetenv("LD_LIBRARY_PATH");
}

} // namespace
} // namespace tarvik
