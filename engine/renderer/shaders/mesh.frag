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
const float kHighlight = 0.16;

vec3 surfaceNormal() {
    float size = length(normal);
    return size > 0.0 ? normal / (gl_FrontFacing ? size : -size) : vec3(0.0, 1.0, 0.0);
}

float highlight(vec3 n, vec3 toEye, vec3 toLight) {
    float facing = max(dot(n, normalize(toLight + toEye)), 0.0);
    facing *= facing; // squared five times: the 32nd power, without what pow costs
    facing *= facing;
    facing *= facing;
    facing *= facing;
    return kHighlight * facing * facing;
}

// Linear up to a knee, then ever slower towards white: bright lights do not burn out.
vec3 compressed(vec3 colour) {
    const float knee = 0.6;
    vec3 above = max(colour - knee, 0.0);
    return min(colour, knee) + (1.0 - knee) * (1.0 - exp(-above / (1.0 - knee)));
}

void main() {
    vec3 n = surfaceNormal();
    vec3 toEye = normalize(frame.eye - world);
    vec3 diffuse = mix(kGroundLight, kSkyLight, 0.5 + 0.5 * n.y);
    vec3 glossy = vec3(0.0);
    for (uint i = 0; i < frame.counts.x; ++i) {
        vec3 toLight = frame.directional[i].place.xyz;
        vec3 light = frame.directional[i].colour.rgb * max(dot(n, toLight), 0.0);
        diffuse += light;
        glossy += light * highlight(n, toEye, toLight);
    }
    for (uint i = 0; i < frame.counts.y; ++i) {
        vec4 place = frame.points[i].place;
        vec3 offset = place.xyz - world;
        float squared = dot(offset, offset);
        float nearness = max(1.0 - squared * place.w, 0.0);
        float facing = max(dot(n, offset), 0.0) * inversesqrt(max(squared, 1e-8));
        diffuse += frame.points[i].colour.rgb * (facing * nearness * nearness / (squared + 1.0));
    }
    result = encoded(compressed(albedo * diffuse + glossy), 1.0);
}
