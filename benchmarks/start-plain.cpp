// Clears Qt's own Vulkan window to a colour, prints a line when its first frame is presented, and ends. With
// the argument "triangle" it also draws one, which makes the driver compile two shaders.
#include <vulkan/vulkan_core.h>

#include <QGuiApplication>
#include <QVersionNumber>
#include <QVulkanDeviceFunctions>
#include <QVulkanInstance>
#include <QVulkanWindow>

#include <array>
#include <cstdio>
#include <span>

namespace {

constexpr std::uint32_t kVertexShader[] = {
#include "triangle.vert.inc"
};
constexpr std::uint32_t kFragmentShader[] = {
#include "triangle.frag.inc"
};

enum class Content { Colour, Triangle };

class PlainRenderer final : public QVulkanWindowRenderer {
public:
    PlainRenderer(QVulkanWindow& window, Content content) : window_(window), content_(content) {}

    void initResources() override {
        functions_ = window_.vulkanInstance()->deviceFunctions(window_.device());
        if (content_ == Content::Triangle)
            createPipeline();
    }

    void releaseResources() override {
        const VkDevice device = window_.device();
        functions_->vkDestroyPipeline(device, pipeline_, nullptr);
        functions_->vkDestroyPipelineLayout(device, layout_, nullptr);
    }

    void startNextFrame() override {
        std::array<VkClearValue, 2> clear{};
        clear[0].color = {{0.1F, 0.2F, 0.3F, 1.0F}};
        clear[1].depthStencil = {1.0F, 0};
        const QSize size = window_.swapChainImageSize();
        const VkExtent2D extent{static_cast<std::uint32_t>(size.width()),
                                static_cast<std::uint32_t>(size.height())};
        VkRenderPassBeginInfo begin{};
        begin.sType = VK_STRUCTURE_TYPE_RENDER_PASS_BEGIN_INFO;
        begin.renderPass = window_.defaultRenderPass();
        begin.framebuffer = window_.currentFramebuffer();
        begin.renderArea.extent = extent;
        begin.clearValueCount = clear.size();
        begin.pClearValues = clear.data();
        const VkCommandBuffer commands = window_.currentCommandBuffer();
        functions_->vkCmdBeginRenderPass(commands, &begin, VK_SUBPASS_CONTENTS_INLINE);
        if (pipeline_ != VK_NULL_HANDLE) {
            const VkViewport viewport{
                0.0F, 0.0F, static_cast<float>(extent.width), static_cast<float>(extent.height), 0.0F, 1.0F};
            const VkRect2D scissor{{0, 0}, extent};
            functions_->vkCmdSetViewport(commands, 0, 1, &viewport);
            functions_->vkCmdSetScissor(commands, 0, 1, &scissor);
            functions_->vkCmdBindPipeline(commands, VK_PIPELINE_BIND_POINT_GRAPHICS, pipeline_);
            functions_->vkCmdDraw(commands, 3, 1, 0, 0);
        }
        functions_->vkCmdEndRenderPass(commands);
        window_.frameReady(); // submits and presents
        std::puts("presented");
        std::fflush(stdout);
        QCoreApplication::quit();
    }

private:
    VkShaderModule createShader(std::span<const std::uint32_t> words) {
        VkShaderModuleCreateInfo info{};
        info.sType = VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO;
        info.codeSize = words.size_bytes();
        info.pCode = words.data();
        VkShaderModule shader = VK_NULL_HANDLE;
        functions_->vkCreateShaderModule(window_.device(), &info, nullptr, &shader);
        return shader;
    }

    void createPipeline() {
        const VkDevice device = window_.device();
        std::array<VkPipelineShaderStageCreateInfo, 2> stages{};
        stages[0].stage = VK_SHADER_STAGE_VERTEX_BIT;
        stages[0].module = createShader(kVertexShader);
        stages[1].stage = VK_SHADER_STAGE_FRAGMENT_BIT;
        stages[1].module = createShader(kFragmentShader);
        for (VkPipelineShaderStageCreateInfo& stage : stages) {
            stage.sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO;
            stage.pName = "main";
        }
        VkPipelineVertexInputStateCreateInfo vertexInput{};
        vertexInput.sType = VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO;
        VkPipelineInputAssemblyStateCreateInfo assembly{};
        assembly.sType = VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO;
        assembly.topology = VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST;
        VkPipelineViewportStateCreateInfo viewport{};
        viewport.sType = VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO;
        viewport.viewportCount = 1;
        viewport.scissorCount = 1;
        VkPipelineRasterizationStateCreateInfo rasterization{};
        rasterization.sType = VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO;
        rasterization.lineWidth = 1.0F;
        VkPipelineMultisampleStateCreateInfo multisample{};
        multisample.sType = VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO;
        multisample.rasterizationSamples = window_.sampleCountFlagBits();
        VkPipelineDepthStencilStateCreateInfo depth{};
        depth.sType = VK_STRUCTURE_TYPE_PIPELINE_DEPTH_STENCIL_STATE_CREATE_INFO;
        VkPipelineColorBlendAttachmentState attachment{};
        attachment.colorWriteMask = VK_COLOR_COMPONENT_R_BIT | VK_COLOR_COMPONENT_G_BIT |
                                    VK_COLOR_COMPONENT_B_BIT | VK_COLOR_COMPONENT_A_BIT;
        VkPipelineColorBlendStateCreateInfo blend{};
        blend.sType = VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO;
        blend.attachmentCount = 1;
        blend.pAttachments = &attachment;
        constexpr std::array dynamicStates{VK_DYNAMIC_STATE_VIEWPORT, VK_DYNAMIC_STATE_SCISSOR};
        VkPipelineDynamicStateCreateInfo dynamic{};
        dynamic.sType = VK_STRUCTURE_TYPE_PIPELINE_DYNAMIC_STATE_CREATE_INFO;
        dynamic.dynamicStateCount = dynamicStates.size();
        dynamic.pDynamicStates = dynamicStates.data();
        VkPipelineLayoutCreateInfo layout{};
        layout.sType = VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO;
        functions_->vkCreatePipelineLayout(device, &layout, nullptr, &layout_);

        VkGraphicsPipelineCreateInfo info{};
        info.sType = VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO;
        info.stageCount = stages.size();
        info.pStages = stages.data();
        info.pVertexInputState = &vertexInput;
        info.pInputAssemblyState = &assembly;
        info.pViewportState = &viewport;
        info.pRasterizationState = &rasterization;
        info.pMultisampleState = &multisample;
        info.pDepthStencilState = &depth;
        info.pColorBlendState = &blend;
        info.pDynamicState = &dynamic;
        info.layout = layout_;
        info.renderPass = window_.defaultRenderPass();
        functions_->vkCreateGraphicsPipelines(device, VK_NULL_HANDLE, 1, &info, nullptr, &pipeline_);
        for (const VkPipelineShaderStageCreateInfo& stage : stages)
            functions_->vkDestroyShaderModule(device, stage.module, nullptr);
    }

    QVulkanWindow& window_;
    Content content_;
    QVulkanDeviceFunctions* functions_ = nullptr;
    VkPipelineLayout layout_ = VK_NULL_HANDLE;
    VkPipeline pipeline_ = VK_NULL_HANDLE;
};

class PlainWindow final : public QVulkanWindow {
public:
    explicit PlainWindow(Content content) : content_(content) {}
    QVulkanWindowRenderer* createRenderer() override { return new PlainRenderer(*this, content_); }

private:
    Content content_;
};

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    QVulkanInstance instance;
    instance.setApiVersion(QVersionNumber(1, 3));
    if (!instance.create()) {
        std::fputs("no Vulkan instance\n", stderr);
        return 1;
    }
    PlainWindow window(QGuiApplication::arguments().contains(QStringLiteral("triangle")) ? Content::Triangle
                                                                                         : Content::Colour);
    window.setVulkanInstance(&instance);
    window.resize(800, 600);
    window.show();
    return QGuiApplication::exec();
}
