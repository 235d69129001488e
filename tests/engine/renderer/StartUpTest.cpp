#include "ContextImpl.hpp"
#include "Drawing.hpp"

#include <tarvik/renderer/Errors.hpp>
#include <tarvik/renderer/Instance.hpp>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace tarvik {
namespace {

class StartUpTest : public testing::DrawingTest {};

TEST_F(StartUpTest, MayBeRepeatedWithoutAComplaint) {
    const Scene scene("empty");
    for (int i = 0; i < 3; ++i) {
        renderer_.reset();
        start();
        ASSERT_TRUE(renderer_->capture(scene, {}, {8, 8}, {}).has_value());
    }
}

TEST_F(StartUpTest, ContextsDoNotDisturbEachOther) {
    start({"VK_KHR_surface"});
    const render::RenderContext other({});
    EXPECT_FALSE(rhi::Instance::availableGpus().empty());
    EXPECT_TRUE(renderer_->capture(Scene("empty"), {}, {8, 8}, {}).has_value());
}

TEST_F(StartUpTest, AGpuThatDoesNotExistIsAnsweredWithThoseThatDo) {
    render::RenderContextConfig config;
    config.preferredDevice = 99;
    try {
        const render::RenderContext context(config);
        FAIL();
    } catch (const rhi::UnsupportedHardwareError& error) {
        const auto first = rhi::Instance::availableGpus().front();
        EXPECT_NE(std::string(error.what()).find("0: " + first.name + " (" + first.kind + ")"),
                  std::string::npos)
            << error.what();
    }
}

// A folder of the test's own.
class Folder final {
public:
    Folder() {
        std::string name = std::filesystem::temp_directory_path() / "renderer.XXXXXX";
        path = mkdtemp(name.data());
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { std::filesystem::remove_all(path); }
    std::filesystem::path path;
};

TEST_F(StartUpTest, ACacheThatCannotBeUsedIsDoneWithout) {
    start();
    const auto& uuid = context_->impl().device.properties.pipelineCacheUUID;
    const std::string name = fmt::format("pipelines-{:02x}.bin", fmt::join(uuid, ""));
    const Folder folder;
    std::filesystem::create_directory(folder.path / "damaged");
    std::ofstream(folder.path / "damaged" / name) << std::string(1000, 'x');
    std::filesystem::create_directories(folder.path / "occupied" / name);
    std::ofstream(folder.path / "file") << "no folder";
    for (const std::wstring& place :
         {folder.path.wstring() + L"/damaged", folder.path.wstring() + L"/occupied",
          folder.path.wstring() + L"/file", std::wstring(1, wchar_t{0xD800})}) {
        renderer_.reset();
        start({}, Watch::Validated, {.pipelineCacheDirectory = place});
        EXPECT_TRUE(renderer_->capture(Scene("empty"), {}, {8, 8}, {}).has_value());
    }
    renderer_.reset();
    context_.reset();
    // As drivers say that have something to keep.
    std::erase_if(complaints_->lines,
                  [](const auto& line) { return line.starts_with("the pipeline cache was not saved"); });
}

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

[[noreturn]] void startWithDriverAndExit(const char* manifest) {
    setenv("VK_DRIVER_FILES", manifest, 1);
    setenv("VK_ICD_FILENAMES", manifest, 1);
    startAndExit();
}

TEST(StartUpDeathTest, WithoutADriverSaysWhatToInstall) {
    EXPECT_EXIT(startWithDriverAndExit("/nowhere.json"), ::testing::ExitedWithCode(3),
                "no Vulkan driver is installed.*mesa-vulkan-drivers");
}

TEST(StartUpDeathTest, WithADriverForOtherHardwareSaysWhatToInstall) {
    const char* const manifest = "/usr/share/vulkan/icd.d/radeon_icd.x86_64.json";
    if (!std::filesystem::exists(manifest) || std::filesystem::exists("/dev/dri"))
        GTEST_SKIP() << "needs a driver that finds no GPU";
    EXPECT_EXIT(startWithDriverAndExit(manifest), ::testing::ExitedWithCode(3),
                "find no GPU.*mesa-vulkan-drivers");
}

TEST(StartUpDeathTest, WithoutALoaderSaysWhatToInstall) {
    // A library that cannot be loaded, found before the real one. Read when a process starts.
    const Folder folder;
    for (const char* const name : {"libvulkan.so.1", "libvulkan.so"})
        std::ofstream(folder.path / name) << "no library";
    setenv("LD_LIBRARY_PATH", folder.path.c_str(), 1);
    EXPECT_EXIT(startAndExit(), ::testing::ExitedWithCode(3),
                "the Vulkan loader is not installed.*libvulkan1");
    unsetenv("LD_LIBRARY_PATH");
}

} // namespace
} // namespace tarvik
