layout(constant_id = 0) const bool kEncodeInShader = false;

vec3 toLinear(vec3 srgb) {
    return mix(srgb / 12.92, pow((srgb + 0.055) / 1.055, vec3(2.4)), greaterThan(srgb, vec3(0.04045)));
}

vec3 toSrgb(vec3 linear) {
    return mix(linear * 12.92, 1.055 * pow(linear, vec3(1.0 / 2.4)) - 0.055, greaterThan(linear, vec3(0.0031308)));
}

// Colours are worked out linear. The image encodes them as sRGB, unless its format cannot.
vec4 encoded(vec3 linear, float alpha) {
    return vec4(kEncodeInShader ? toSrgb(linear) : linear, alpha);
}
