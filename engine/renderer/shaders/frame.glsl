// What every shader of a frame reads. The layout is that of FrameData in FrameStream.cpp.
struct Light {
    vec4 place;  // directional: towards the light; point: position, and one over the squared range in w
    vec4 colour; // linear, intensity included
};

layout(set = 0, binding = 0, std140) uniform Frame {
    mat4 viewProjection;
    mat4 rayFromClip; // from a point of the near plane to its direction in the world
    vec3 eye;
    float gridReach; // metres
    uvec4 counts;    // directional lights, point lights
    Light directional[4];
    Light points[16];
} frame;
