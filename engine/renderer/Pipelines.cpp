#include "Pipelines.hpp"

#include "FrameStream.hpp"
#include "Geometry.hpp"
#include "Result.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace tarvik::render {

namespace {

using Kind = Pipelines::Kind;

constexpr std::array<std::string_view, Pipelines::kKinds> kNames{"mesh", "sky", "grid"};

rhi::UniqueShaderModule loadShader(const rhi::Device& device, const ShaderSource& shaders,
                                   std::string_view name) {
    const auto words = shaders.load(name);
    const VkShaderModuleCreateInfo info{.sType = VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO,
                                        .codeSize = words.size() * sizeof(std::uint32_t),
                                        .pCode = words.data()};
    VkShaderModule shader = VK_NULL_HANDLE;
    rhi::check(device.vk.vkCreateShaderModule(device.handle, &info, nullptr, &shader),
               "creating the shader " + std::string(name));
    return {device, shader};
}

constexpr std::array<VkVertexInputBindingDescription, 2> kBindings{
    {{0, sizeof(Vertex), VK_VERTEX_INPUT_RATE_VERTEX}, {1, sizeof(Instance), VK_VERTEX_INPUT_RATE_INSTANCE}}};

constexpr std::array<VkVertexInputAttributeDescription, 6> kAttributes{
    {{0, 0, VK_FORMAT_R32G32B32_SFLOAT, offsetof(Vertex, position)},
     {1, 0, VK_FORMAT_R32G32B32_SFLOAT, offsetof(Vertex, normal)},
     {2, 1, VK_FORMAT_R32G32B32_SFLOAT, offsetof(Instance, position)},
     {3, 1, VK_FORMAT_R32G32B32A32_SFLOAT, offsetof(Instance, rotation)},
     {4, 1, VK_FORMAT_R32G32B32_SFLOAT, offsetof(Instance, scale)},
     {5, 1, VK_FORMAT_R8G8B8A8_UNORM, offsetof(Instance, colour)}}};

rhi::UniquePipeline makePipeline(const rhi::Device& device, const ShaderSource& shaders,
                                 VkPipelineLayout layout, PictureFormat format, Kind kind) {
    const std::string_view name = kNames[static_cast<std::size_t>(kind)];
    const auto vertexShader = loadShader(device, shaders, std::string(name) + ".vert");
    const auto fragmentShader = loadShader(device, shaders, std::string(name) + ".frag");
    const VkBool32 encodeInShader = encodesSrgb(format.colour) ? VK_FALSE : VK_TRUE;
    const VkSpecializationMapEntry entry{.constantID = 0, .offset = 0, .size = sizeof encodeInShader};
    const VkSpecializationInfo constants{.mapEntryCount = 1,
                                         .pMapEntries = &entry,
                                         .dataSize = sizeof encodeInShader,
                                         .pData = &encodeInShader};
    const std::array<VkPipelineShaderStageCreateInfo, 2> stages{
        {{.sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO,
          .stage = VK_SHADER_STAGE_VERTEX_BIT,
          .module = vertexShader.get(),
          .pName = "main"},
         {.sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO,
          .stage = VK_SHADER_STAGE_FRAGMENT_BIT,
          .module = fragmentShader.get(),
          .pName = "main",
          .pSpecializationInfo = &constants}}};

    VkPipelineVertexInputStateCreateInfo input{.sType =
                                                   VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO};
    if (kind == Kind::Mesh) {
        input.vertexBindingDescriptionCount = static_cast<std::uint32_t>(kBindings.size());
        input.pVertexBindingDescriptions = kBindings.data();
        input.vertexAttributeDescriptionCount = static_cast<std::uint32_t>(kAttributes.size());
        input.pVertexAttributeDescriptions = kAttributes.data();
    }
    const VkPipelineInputAssemblyStateCreateInfo assembly{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO,
        .topology =
            kind == Kind::Grid ? VK_PRIMITIVE_TOPOLOGY_TRIANGLE_STRIP : VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST};
    const VkPipelineViewportStateCreateInfo viewport{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO,
        .viewportCount = 1,
        .scissorCount = 1};
    const VkPipelineRasterizationStateCreateInfo rasterization{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO,
        .polygonMode = VK_POLYGON_MODE_FILL,
        .frontFace = VK_FRONT_FACE_COUNTER_CLOCKWISE,
        .lineWidth = 1.0F};
    const VkPipelineMultisampleStateCreateInfo multisample{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO,
        .rasterizationSamples = format.samples};
    // Depth is reversed: nearer is greater. Sky and grid only look.
    const VkPipelineDepthStencilStateCreateInfo depth{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_DEPTH_STENCIL_STATE_CREATE_INFO,
        .depthTestEnable = VK_TRUE,
        .depthWriteEnable = kind == Kind::Mesh ? VK_TRUE : VK_FALSE,
        .depthCompareOp = VK_COMPARE_OP_GREATER_OR_EQUAL};
    const VkPipelineColorBlendAttachmentState blendAttachment{
        .blendEnable = kind == Kind::Grid ? VK_TRUE : VK_FALSE,
        .srcColorBlendFactor = VK_BLEND_FACTOR_SRC_ALPHA,
        .dstColorBlendFactor = VK_BLEND_FACTOR_ONE_MINUS_SRC_ALPHA,
        .colorBlendOp = VK_BLEND_OP_ADD,
        .srcAlphaBlendFactor = VK_BLEND_FACTOR_ZERO, // the picture stays opaque
        .dstAlphaBlendFactor = VK_BLEND_FACTOR_ONE,
        .alphaBlendOp = VK_BLEND_OP_ADD,
        .colorWriteMask = VK_COLOR_COMPONENT_R_BIT | VK_COLOR_COMPONENT_G_BIT | VK_COLOR_COMPONENT_B_BIT |
                          VK_COLOR_COMPONENT_A_BIT};
    const VkPipelineColorBlendStateCreateInfo blend{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO,
        .attachmentCount = 1,
        .pAttachments = &blendAttachment};
    constexpr std::array dynamicStates{VK_DYNAMIC_STATE_VIEWPORT, VK_DYNAMIC_STATE_SCISSOR,
                                       VK_DYNAMIC_STATE_CULL_MODE};
    const VkPipelineDynamicStateCreateInfo dynamic{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_DYNAMIC_STATE_CREATE_INFO,
        .dynamicStateCount = static_cast<std::uint32_t>(dynamicStates.size()),
        .pDynamicStates = dynamicStates.data()};
    const VkPipelineRenderingCreateInfo rendering{.sType = VK_STRUCTURE_TYPE_PIPELINE_RENDERING_CREATE_INFO,
                                                  .colorAttachmentCount = 1,
                                                  .pColorAttachmentFormats = &format.colour,
                                                  .depthAttachmentFormat = rhi::kDepthFormat};
    const VkGraphicsPipelineCreateInfo info{.sType = VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO,
                                            .pNext = &rendering,
                                            .stageCount = static_cast<std::uint32_t>(stages.size()),
                                            .pStages = stages.data(),
                                            .pVertexInputState = &input,
                                            .pInputAssemblyState = &assembly,
                                            .pViewportState = &viewport,
                                            .pRasterizationState = &rasterization,
                                            .pMultisampleState = &multisample,
                                            .pDepthStencilState = &depth,
                                            .pColorBlendState = &blend,
                                            .pDynamicState = &dynamic,
                                            .layout = layout};
    VkPipeline pipeline = VK_NULL_HANDLE;
    rhi::check(device.vk.vkCreateGraphicsPipelines(device.handle, device.pipelineCache, 1, &info, nullptr,
                                                   &pipeline),
               "compiling the pipeline " + std::string(name));
    return {device, pipeline};
}

} // namespace

bool encodesSrgb(VkFormat format) {
    return format == VK_FORMAT_B8G8R8A8_SRGB || format == VK_FORMAT_R8G8B8A8_SRGB ||
           format == VK_FORMAT_A8B8G8R8_SRGB_PACK32;
}

Pipelines::Pipelines(const rhi::Device& device, const ShaderSource& shaders)
    : device_(device),
      shaders_(shaders),
      frameLayout_(makeFrameSetLayout(device)) {
    const VkDescriptorSetLayout frame = frameLayout_.get();
    const VkPipelineLayoutCreateInfo info{
        .sType = VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO, .setLayoutCount = 1, .pSetLayouts = &frame};
    VkPipelineLayout layout = VK_NULL_HANDLE;
    rhi::check(device.vk.vkCreatePipelineLayout(device.handle, &info, nullptr, &layout),
               "creating the pipeline layout");
    layout_ = {device, layout};
}

VkPipeline Pipelines::get(PictureFormat format, Kind kind) {
    auto set = std::ranges::find(sets_, format, &Set::format);
    if (set == sets_.end())
        set = sets_.insert(set, {format, {}});
    rhi::UniquePipeline& pipeline = set->pipelines[static_cast<std::size_t>(kind)];
    if (pipeline.get() == VK_NULL_HANDLE)
        pipeline = makePipeline(device_, shaders_, layout_.get(), format, kind);
    return pipeline.get();
}

} // namespace tarvik::render
