#version 460
#extension GL_GOOGLE_include_directive : require
#include "colour.glsl"
#include "frame.glsl"

layout(location = 0) in vec3 world;
layout(location = 1) in vec3 normal;
layout(location = 2) flat in vec3 albedo;

layout(location = 0) out vec4 result;

const vec3 kSkyLight = vec3(0.30, 0.34, 0.42);
const vec3 kGroundLight = vec3(0.11, 0.10, 0.09);
const float kShininess = 48.0;
const float kHighlight = 0.18;

vec3 surfaceNormal() {
    float size = length(normal);
    return size > 0.0 ? normal / (gl_FrontFacing ? size : -size) : vec3(0.0, 1.0, 0.0);
}

vec3 lit(vec3 n, vec3 toEye, vec3 toLight, vec3 light) {
    float facing = max(dot(n, toLight), 0.0);
    float highlight = pow(max(dot(n, normalize(toLight + toEye)), 0.0), kShininess);
    return light * facing * (albedo + kHighlight * highlight);
}

// Linear up to a knee, then ever slower towards white: bright lights do not burn out.
vec3 compressed(vec3 colour) {
    const float knee = 0.65;
    vec3 above = max(colour - knee, 0.0);
    return min(colour, knee) + (1.0 - knee) * (1.0 - exp(-above / (1.0 - knee)));
}

void main() {
    vec3 n = surfaceNormal();
    vec3 toEye = normalize(frame.eye - world);
    vec3 colour = albedo * mix(kGroundLight, kSkyLight, 0.5 + 0.5 * n.y);
    for (uint i = 0; i < frame.counts.x; ++i)
        colour += lit(n, toEye, frame.directional[i].place.xyz, frame.directional[i].colour.rgb);
    for (uint i = 0; i < frame.counts.y; ++i) {
        vec4 place = frame.points[i].place;
        vec3 offset = place.xyz - world;
        float squared = dot(offset, offset);
        float inRange = clamp(1.0 - squared * squared / (place.w * place.w * place.w * place.w), 0.0, 1.0);
        colour += lit(n, toEye, offset * inversesqrt(max(squared, 1e-8)), frame.points[i].colour.rgb) *
                  (inRange * inRange / (squared + 1.0));
    }
    result = encoded(compressed(colour), 1.0);
}
