#include "support/glass_reference.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>

namespace varnelo::reference {

namespace {

float eightBits(float value) { return std::round(std::clamp(value, 0.0F, 1.0F) * 255) / 255; }

int steps(float value) { return static_cast<int>(std::lround(value * 255)); }

// The mean of the four diagonal neighbours at a distance of (dx, dy).
Color diagonalMean(const Picture& scene, float u, float v, float dx, float dy) {
    return (scene.sample(u - dx, v - dy) + scene.sample(u + dx, v - dy) + scene.sample(u - dx, v + dy) +
            scene.sample(u + dx, v + dy)) *
           0.25F;
}

// Source over target by the source's alpha; the alpha itself is replaced.
void blend(Picture& target, int x, int y, Color source) {
    Color result = mix(target.at(x, y), source, source.a);
    result.a = source.a;
    target.set(x, y, result);
}

// Half blue, by `factor`; alpha stays.
Color blueish(Color color, float factor) {
    Color result = mix(color, {0, 0.5F, 1, 0}, factor);
    result.a = color.a;
    return result;
}

}  // namespace

Color operator+(Color x, Color y) { return {x.r + y.r, x.g + y.g, x.b + y.b, x.a + y.a}; }

Color operator*(Color x, float factor) { return {x.r * factor, x.g * factor, x.b * factor, x.a * factor}; }

Color mix(Color x, Color y, float factor) { return x * (1 - factor) + y * factor; }

Picture::Picture(int columns, int rows, Color fill)
    : columnCount(columns), rowCount(rows), pixels(static_cast<std::size_t>(columns) * rows, fill) {}

Color Picture::at(int x, int y) const {
    x = std::clamp(x, 0, columnCount - 1);
    y = std::clamp(y, 0, rowCount - 1);
    return pixels[static_cast<std::size_t>(y) * columnCount + x];
}

void Picture::set(int x, int y, Color color) {
    pixels[static_cast<std::size_t>(y) * columnCount + x] = {eightBits(color.r), eightBits(color.g),
                                                             eightBits(color.b), eightBits(color.a)};
}

Color Picture::sample(float u, float v) const {
    const float x = u * static_cast<float>(columnCount) - 0.5F;
    const float y = v * static_cast<float>(rowCount) - 0.5F;
    const int left = static_cast<int>(std::floor(x));
    const int top = static_cast<int>(std::floor(y));
    const float fx = x - static_cast<float>(left);
    const float fy = y - static_cast<float>(top);
    return mix(mix(at(left, top), at(left + 1, top), fx), mix(at(left, top + 1), at(left + 1, top + 1), fx),
               fy);
}

std::vector<std::uint8_t> Picture::bgra() const {
    std::vector<std::uint8_t> bytes;
    for (const Color& pixel : pixels)
        for (const float channel : {pixel.b, pixel.g, pixel.r, pixel.a})
            bytes.push_back(static_cast<std::uint8_t>(steps(channel)));
    return bytes;
}

Picture Picture::fromRgba(const std::uint8_t* bytes, int columns, int rows, int strideBytes) {
    Picture picture(columns, rows);
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x) {
            const std::uint8_t* p = bytes + static_cast<std::ptrdiff_t>(y) * strideBytes + x * 4;
            picture.set(x, y, Color{float(p[0]), float(p[1]), float(p[2]), float(p[3])} * (1.0F / 255));
        }
    return picture;
}

void drawGlass(Picture& target, const Picture& icon, const Picture& scene, const Glass& glass) {
    const float width = static_cast<float>(target.width());
    const float height = static_cast<float>(target.height());
    for (int y = 0; y < target.height(); ++y)
        for (int x = 0; x < target.width(); ++x) {
            const float u = (static_cast<float>(x) + 0.5F - glass.x) / glass.size;
            const float v = (static_cast<float>(y) + 0.5F - glass.y) / glass.size;
            if (u < 0 || v < 0 || u >= 1 || v >= 1) continue;
            Color front = icon.sample(u, v);
            // The pixel's own place on the screen, pushed outward by 3 % of its distance from the middle.
            const float sceneU = (static_cast<float>(x) + 0.5F) / width + (u - 0.5F) * 0.03F;
            const float sceneV = (static_cast<float>(y) + 0.5F) / height + (v - 0.5F) * 0.03F;
            Color behind = diagonalMean(scene, sceneU, sceneV, 2 / width, 2 / height);
            const float mask = 1 - front.a;
            if (glass.selected) {
                front = blueish(front, 0.5F);
                behind = blueish(behind, mask * 0.5F);
            }
            Color result = mix(front, behind, mask);
            if (glass.dimmed) result.a *= 0.5F;
            blend(target, x, y, result);
        }
}

void drawBlur(Picture& target, const Picture& scene, const Blur& blur) {
    const float width = static_cast<float>(target.width());
    const float height = static_cast<float>(target.height());
    for (int y = std::max(blur.top, 0); y < std::min(blur.bottom, target.height()); ++y)
        for (int x = std::max(blur.left, 0); x < std::min(blur.right, target.width()); ++x) {
            const Color behind = diagonalMean(scene, (static_cast<float>(x) + 0.5F) / width,
                                              (static_cast<float>(y) + 0.5F) / height, blur.offset / width,
                                              blur.offset / height);
            blend(target, x, y, mix(behind, blur.tint, blur.tint.a));
        }
}

Difference greatestDifference(const Picture& a, const Picture& b) {
    Difference greatest;
    if (a.width() != b.width() || a.height() != b.height()) return {256, -1, -1};
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const Color p = a.at(x, y);
            const Color q = b.at(x, y);
            const int difference =
                std::max({std::abs(steps(p.r) - steps(q.r)), std::abs(steps(p.g) - steps(q.g)),
                          std::abs(steps(p.b) - steps(q.b)), std::abs(steps(p.a) - steps(q.a))});
            if (difference > greatest.steps) greatest = {difference, x, y};
        }
    return greatest;
}

Picture busyPicture(int columns, int rows, unsigned seed) {
    std::minstd_rand random(seed);
    const auto noise = [&random] { return static_cast<float>(random() % 256) / 255; };
    Picture picture(columns, rows);
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x) {
            const float stripe = (x / 7 + y / 5) % 2 == 0 ? 1.0F : 0.0F;
            picture.set(x, y, {mix({stripe, 0, 0, 0}, {noise(), 0, 0, 0}, 0.5F).r, noise(), 1 - stripe, 1});
        }
    return picture;
}

}  // namespace varnelo::reference
