#version 460
#extension GL_GOOGLE_include_directive : require
#include "frame.glsl"

layout(location = 0) out vec2 ground; // metres along x and z

void main() {
    vec2 corner = vec2(gl_VertexIndex & 1, gl_VertexIndex >> 1) * 2.0 - 1.0;
    ground = frame.eye.xz + corner * frame.gridReach;
    gl_Position = frame.viewProjection * vec4(ground.x, 0.0, ground.y, 1.0);
    // A hair nearer than it is, so that a floor at the same height does not flicker through.
    gl_Position.z *= 1.0005;
}
