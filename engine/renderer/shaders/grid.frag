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
vec2 lines(float spacing, vec2 footprint, vec2 pixelsPerMetre, float width) {
    vec2 apart = abs(fract(ground / spacing - 0.5) - 0.5) * spacing * pixelsPerMetre;
    return clamp(width + 0.5 - apart, 0.0, 1.0) * (1.0 - smoothstep(0.15, 0.5, footprint / spacing));
}

void main() {
    vec2 footprint = max(fwidth(ground), 1e-6);
    vec2 pixelsPerMetre = 1.0 / footprint;
    vec2 minor = lines(1.0, footprint, pixelsPerMetre, 0.35) * 0.16;
    vec2 major = lines(10.0, footprint, pixelsPerMetre, 0.5) * 0.38;
    vec2 coarse = lines(100.0, footprint, pixelsPerMetre, 0.5) * 0.38;
    vec2 both = max(max(minor, major), coarse);
    float strength = max(both.x, both.y);

    // x lies along the axis of x where y is zero.
    vec2 axes = clamp(1.25 - abs(ground.yx) * pixelsPerMetre.yx, 0.0, 1.0) * 0.75;
    float axis = max(axes.x, axes.y);
    strength = max(strength, axis);
    vec3 colour = mix(toLinear(kLine), toLinear(axes.x >= axes.y ? kAxisX : kAxisZ), axis / max(strength, 1e-6));

    vec2 offset = ground - frame.eye.xz;
    float squared = dot(offset, offset);
    float fade = 1.0 - smoothstep(0.15, 1.0, sqrt(squared) / frame.gridReach);
    // Seen from near the ground, far lines melt together: let them go sooner.
    float steepness = abs(frame.eye.y) * inversesqrt(max(squared + frame.eye.y * frame.eye.y, 1e-8));
    fade *= smoothstep(0.0, 0.12, steepness);
    result = encoded(colour, strength * fade);
}
