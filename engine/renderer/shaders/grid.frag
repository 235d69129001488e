#version 460
#extension GL_GOOGLE_include_directive : require
#include "colour.glsl"
#include "frame.glsl"

layout(location = 0) in vec2 ground;
layout(location = 0) out vec4 result;

const vec3 kLine = vec3(0.55, 0.58, 0.64);
const vec3 kAxisX = vec3(0.86, 0.29, 0.33);
const vec3 kAxisZ = vec3(0.30, 0.50, 0.92);

// How much of the pixel lines of the given spacing cover; nothing where they would crowd into a grey haze.
vec2 lines(float spacing, vec2 footprint, float width) {
    vec2 cell = ground / spacing;
    vec2 pixel = footprint / spacing;
    vec2 apart = abs(fract(cell - 0.5) - 0.5) / max(pixel, 1e-6);
    return clamp(width + 0.5 - apart, 0.0, 1.0) * (1.0 - smoothstep(0.15, 0.5, pixel));
}

float axis(float along, float footprint) {
    return clamp(1.25 - abs(along) / max(footprint, 1e-6), 0.0, 1.0);
}

void main() {
    vec2 footprint = fwidth(ground);
    vec2 minor = lines(1.0, footprint, 0.35) * 0.16;
    vec2 major = lines(10.0, footprint, 0.5) * 0.38;
    vec2 coarse = lines(100.0, footprint, 0.5) * 0.38;
    vec2 both = max(max(minor, major), coarse);
    float strength = max(both.x, both.y);
    vec3 colour = kLine;

    float onX = axis(ground.y, footprint.y) * 0.75;
    float onZ = axis(ground.x, footprint.x) * 0.75;
    if (onX > 0.0 && onX >= onZ)
        colour = mix(kLine, kAxisX, onX / max(onX, strength));
    else if (onZ > 0.0)
        colour = mix(kLine, kAxisZ, onZ / max(onZ, strength));
    strength = max(strength, max(onX, onZ));

    float distance = length(ground - frame.eye.xz) / frame.gridReach;
    float fade = 1.0 - smoothstep(0.15, 1.0, distance);
    // Seen from near the ground, far lines melt together: let them go sooner.
    vec3 view = frame.eye - vec3(ground.x, 0.0, ground.y);
    fade *= smoothstep(0.0, 0.12, abs(view.y) / max(length(view), 1e-4));
    result = encoded(toLinear(colour), strength * fade);
}
