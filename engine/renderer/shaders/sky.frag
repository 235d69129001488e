#version 460
#extension GL_GOOGLE_include_directive : require
#include "colour.glsl"
#include "frame.glsl"

layout(location = 0) in vec3 direction;
layout(location = 0) out vec4 result;

// sRGB; the horizon is the lightest, so that silhouettes stand out against it.
const vec3 kZenith = vec3(0.071, 0.075, 0.086);
const vec3 kHorizon = vec3(0.165, 0.176, 0.204);
const vec3 kGround = vec3(0.078, 0.080, 0.088);

float noise(vec2 pixel) {
    return fract(52.9829189 * fract(dot(pixel, vec2(0.06711056, 0.00583715))));
}

// What toLinear makes of colours as dark as these, to an eighth of a step: most of the picture is sky, and a
// processor that draws it feels every power.
vec3 darkToLinear(vec3 srgb) {
    return 0.00198 + srgb * (0.00489 + 0.75237 * srgb);
}

void main() {
    float height = direction.y * inversesqrt(dot(direction, direction));
    bool above = height > 0.0;
    vec3 srgb = mix(above ? kZenith : kGround, kHorizon, exp(height * (above ? -3.5 : 7.0)));
    // Half a step of noise hides the bands of a dark gradient.
    srgb += (noise(gl_FragCoord.xy) - 0.5) / 255.0;
    result = encoded(darkToLinear(srgb), 1.0);
}
