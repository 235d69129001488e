#version 460

void main() {
    gl_Position = vec4(vec2(gl_VertexIndex & 1, gl_VertexIndex >> 1) - 0.5, 0.0, 1.0);
}
