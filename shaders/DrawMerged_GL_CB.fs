#version 150
// Frosted shapes: the frame behind the overlay, blurred over a disc, under the panel's colour.
// The diameter, _CIRCLE_BLUR_DIAMETER_, comes in at compile time, in window pixels.
uniform sampler2D tex;

flat in vec4 tint;

out vec4 colour;

// At most nine samples across, whatever the diameter.
const int spacing = _CIRCLE_BLUR_DIAMETER_ > 8 ? (_CIRCLE_BLUR_DIAMETER_ + 7) / 8 : 1;
const int reach = _CIRCLE_BLUR_DIAMETER_ / (2 * spacing);

// The copy of the frame has the window's size and its rows from the bottom up, as gl_FragCoord has.
// Points outside are held at the middle of the outermost pixels, so that no border colour comes in.
vec3 backdrop(vec2 pixel, vec2 size) {
    return texture(tex, clamp(pixel, vec2(0.5), size - 0.5) / size).rgb;
}

void main() {
    vec2 size = vec2(textureSize(tex, 0));
    vec3 sum = vec3(0.0);
    float count = 0.0;
    for (int i = -reach; i <= reach; ++i) {
        for (int j = -reach; j <= reach; ++j) {
            // Inside the disc: distance at most half the diameter.
            if (4 * spacing * spacing * (i * i + j * j) <= _CIRCLE_BLUR_DIAMETER_ * _CIRCLE_BLUR_DIAMETER_) {
                sum += backdrop(gl_FragCoord.xy + vec2(i * spacing, j * spacing), size);
                count += 1.0;
            }
        }
    }
    colour = vec4(mix(sum / count, tint.rgb, tint.a), 1.0);
}
