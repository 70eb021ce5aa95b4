#version 150
// Frosted shapes: the frame behind the overlay, blurred over a disc, under the panel's colour.
// The blur is that of DrawBasic_GL_CB.fs to the letter, since a shader file can take in no other; change both.
// The diameter, _CIRCLE_BLUR_DIAMETER_, comes in at compile time, in window pixels.
uniform sampler2D tex;

flat in vec4 tint;

out vec4 colour;

// At most nine samples across, whatever the diameter.
const int spacing = _CIRCLE_BLUR_DIAMETER_ > 8 ? (_CIRCLE_BLUR_DIAMETER_ + 7) / 8 : 1;
const int reach = _CIRCLE_BLUR_DIAMETER_ / (2 * spacing);

// The copy of the frame has the window's size and its rows from the bottom up, as gl_FragCoord has, so each
// sample is one pixel of it and needs no filter. Points outside are held at the outermost pixels.
vec3 backdrop(ivec2 pixel, ivec2 last) {
    return texelFetch(tex, clamp(pixel, ivec2(0), last), 0).rgb;
}

void main() {
    ivec2 last = textureSize(tex, 0) - 1;
    ivec2 middle = ivec2(gl_FragCoord.xy);
    vec3 sum = vec3(0.0);
    float count = 0.0;
    for (int i = -reach; i <= reach; ++i) {
        for (int j = -reach; j <= reach; ++j) {
            // Inside the disc: distance at most half the diameter.
            if (4 * spacing * spacing * (i * i + j * j) <= _CIRCLE_BLUR_DIAMETER_ * _CIRCLE_BLUR_DIAMETER_) {
                sum += backdrop(middle + ivec2(i, j) * spacing, last);
                count += 1.0;
            }
        }
    }
    colour = vec4(mix(sum / count, tint.rgb, tint.a), 1.0);
}
