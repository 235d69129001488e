#version 460
#extension GL_GOOGLE_include_directive : require
#include "frame.glsl"

layout(location = 0) out vec2 ground; // metres along x and z

const vec2 kCorners[4] = vec2[](vec2(-1.0, -1.0), vec2(1.0, -1.0), vec2(-1.0, 1.0), vec2(1.0, 1.0));

void main() {
    ground = frame.eye.xz + kCorners[gl_VertexIndex] * frame.eye.w;
    gl_Position = frame.viewProjection * vec4(ground.x, 0.0, ground.y, 1.0);
    // A hair nearer than it is, so that a floor at the same height does not flicker through.
    gl_Position.z *= 1.0005;
}
