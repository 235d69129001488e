// Clears Qt's own Vulkan window to a colour, prints a line when its first frame is presented, and ends.
#include <vulkan/vulkan_core.h>

#include <QGuiApplication>
#include <QVulkanDeviceFunctions>
#include <QVulkanInstance>
#include <QVulkanWindow>

#include <array>
#include <cstdio>

namespace {

class ClearRenderer final : public QVulkanWindowRenderer {
public:
    explicit ClearRenderer(QVulkanWindow& window) : window_(window) {}

    void startNextFrame() override {
        std::array<VkClearValue, 2> clear{};
        clear[0].color = {{0.1F, 0.2F, 0.3F, 1.0F}};
        clear[1].depthStencil = {1.0F, 0};
        const QSize size = window_.swapChainImageSize();
        VkRenderPassBeginInfo begin{};
        begin.sType = VK_STRUCTURE_TYPE_RENDER_PASS_BEGIN_INFO;
        begin.renderPass = window_.defaultRenderPass();
        begin.framebuffer = window_.currentFramebuffer();
        begin.renderArea.extent = {static_cast<std::uint32_t>(size.width()),
                                   static_cast<std::uint32_t>(size.height())};
        begin.clearValueCount = clear.size();
        begin.pClearValues = clear.data();
        QVulkanDeviceFunctions& functions = *window_.vulkanInstance()->deviceFunctions(window_.device());
        functions.vkCmdBeginRenderPass(window_.currentCommandBuffer(), &begin, VK_SUBPASS_CONTENTS_INLINE);
        functions.vkCmdEndRenderPass(window_.currentCommandBuffer());
        window_.frameReady(); // submits and presents
        std::puts("presented");
        std::fflush(stdout);
        QCoreApplication::quit();
    }

private:
    QVulkanWindow& window_;
};

class ClearWindow final : public QVulkanWindow {
public:
    QVulkanWindowRenderer* createRenderer() override { return new ClearRenderer(*this); }
};

} // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    QVulkanInstance instance;
    if (!instance.create()) {
        std::fputs("no Vulkan instance\n", stderr);
        return 1;
    }
    ClearWindow window;
    window.setVulkanInstance(&instance);
    window.resize(800, 600);
    window.show();
    return QGuiApplication::exec();
}
