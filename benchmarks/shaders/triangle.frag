#version 460

layout(location = 0) out vec4 colour;

void main() {
    colour = vec4(1.0, 0.5, 0.2, 1.0);
}
