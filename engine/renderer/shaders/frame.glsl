// What every shader of a frame reads. The layout is that of FrameData in FrameStream.cpp. No vector holds two
// things: a software driver misreads parts of one that leave a gap, such as xz with w.
#extension GL_EXT_buffer_reference : require

struct Light {
    vec4 place;  // directional: towards the light; point: position, and range in w
    vec4 colour; // linear, intensity included
};

layout(buffer_reference, std430, buffer_reference_align = 16) readonly buffer Frame {
    mat4 viewProjection;
    mat4 rayFromClip; // from a point of the near plane to its direction in the world
    vec3 eye;
    float gridReach;  // metres
    uvec4 counts;     // directional lights, point lights
    Light directional[4];
    Light points[16];
};

layout(push_constant) uniform Push {
    Frame frame;
};
