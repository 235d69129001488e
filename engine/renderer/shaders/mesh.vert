#version 460
#extension GL_GOOGLE_include_directive : require
#include "colour.glsl"
#include "frame.glsl"

layout(location = 0) in vec3 vertexPosition;
layout(location = 1) in vec3 vertexNormal;
layout(location = 2) in vec3 position;
layout(location = 3) in vec4 rotation;
layout(location = 4) in vec3 scale;
layout(location = 5) in vec4 colour;

layout(location = 0) out vec3 world;
layout(location = 1) out vec3 normal;
layout(location = 2) flat out vec3 albedo;

vec3 rotate(vec4 q, vec3 v) {
    return v + 2.0 * cross(q.xyz, cross(q.xyz, v) + q.w * v);
}

void main() {
    // The primitives look the same mirrored, so a negative scale needs no turning of the triangles.
    vec3 size = abs(scale);
    world = rotate(rotation, vertexPosition * size) + position;
    // Divided by the scale, up to a factor: it stays defined when a scale is zero.
    normal = rotate(rotation, vertexNormal * size.yzx * size.zxy);
    albedo = toLinear(colour.rgb);
    gl_Position = frame.viewProjection * vec4(world, 1.0);
}
