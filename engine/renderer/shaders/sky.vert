#version 460
#extension GL_GOOGLE_include_directive : require
#include "frame.glsl"

layout(location = 0) out vec3 direction;

void main() {
    vec2 corner = vec2(gl_VertexIndex & 1, gl_VertexIndex >> 1) * 4.0 - 1.0;
    vec4 ray = frame.rayFromClip * vec4(corner, 1.0, 1.0);
    direction = ray.xyz / ray.w;
    gl_Position = vec4(corner, 0.0, 1.0); // at the far end: only where nothing was drawn
}
