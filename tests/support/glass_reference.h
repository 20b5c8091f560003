#pragma once

#include <cstdint>
#include <vector>

namespace varnelo::reference {

// A second, plain statement of what the shaders, the sampler and the blending do, for comparison pixel by
// pixel. It shares no code with the program.

struct Color {
    float r = 0, g = 0, b = 0, a = 0;
};

Color operator+(Color x, Color y);
Color operator*(Color x, float factor);
// From x to y; a factor of 1 gives y.
Color mix(Color x, Color y, float factor);

// Eight bits a channel, as the device stores it; channels from 0 to 1.
class Picture {
public:
    Picture(int columns, int rows, Color fill = {});

    int width() const { return columnCount; }
    int height() const { return rowCount; }
    Color at(int x, int y) const;
    void set(int x, int y, Color color);  // rounds to eight bits
    // Linear between the four nearest pixels, the edge repeated outside. (0, 0) is the upper left corner,
    // (1, 1) the lower right one.
    Color sample(float u, float v) const;

    std::vector<std::uint8_t> bgra() const;
    static Picture fromRgba(const std::uint8_t* bytes, int columns, int rows, int strideBytes);

private:
    int columnCount, rowCount;
    std::vector<Color> pixels;
};

struct Glass {
    float x = 0, y = 0, size = 0;  // pixels
    bool selected = false;
    bool dimmed = false;
};

// Draws over `target`: one icon as glass over `scene`.
void drawGlass(Picture& target, const Picture& icon, const Picture& scene, const Glass& glass);

struct Blur {
    int left = 0, top = 0, right = 0, bottom = 0;  // pixels
    float offset = 0;                              // pixels
    Color tint;
};

void drawBlur(Picture& target, const Picture& scene, const Blur& blur);

// The greatest difference of any channel, in steps of eight bits, and where it is.
struct Difference {
    int steps = 0;
    int x = 0, y = 0;
};
Difference greatestDifference(const Picture& a, const Picture& b);

// High contrast everywhere: coloured noise over stripes. The same seed gives the same picture.
Picture busyPicture(int columns, int rows, unsigned seed);

}  // namespace varnelo::reference
