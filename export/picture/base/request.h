// What a picture shall be like: plain values, all of them with the default that suits most.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

namespace picture {

inline constexpr uint32_t most_pixels = 16384; // on a picture's side
inline constexpr unsigned most_side = 16;      // samples on a pixel's side

struct Size {
    uint32_t width = 0, height = 0; // pixels, 1 to most_pixels
};

// camera: through the scene's own. The others stand outside and show all of it, straight from a side without
// perspective, three_quarter in perspective. front: from +Z, the side that objects turn to the viewer; right: from +X.
// automatic: camera where there is one, else three_quarter.
enum class View : uint8_t { automatic, camera, front, back, left, right, top, three_quarter };

// What is seen where nothing is. file: the scene's backdrop; black for a scene without, a soft grey for objects alone.
struct Background {
    enum class Kind : uint8_t { file, color, none } kind = Kind::file; // none: transparent
    std::array<double, 3> color{};                                     // linear, 0 to 1
};

// A lamp at the camera, and light from above and below. automatic: where the file has no lights, and where what they
// show would be nearly black.
enum class Lamp : uint8_t { automatic, on, off };

// Samples to pixels. box: the mean of a pixel's own. gaussian: those round it count too, up to 1.5 pixels away, and
// edges show no steps.
enum class Filter : uint8_t { box, gaussian };

struct Request {
    std::optional<Size> size; // else the scene's own; 640 x 480 where it has none
    View view = View::automatic;
    std::optional<double> frame; // of the scene's time line; else its first
    unsigned samples = 4;        // a pixel has this number squared; 1 to most_side
    Filter filter = Filter::gaussian;
    Background background;
    Lamp lamp = Lamp::automatic;
    uint32_t longest_texture = most_pixels;                            // larger textures are reduced
    unsigned threads = 0;                                              // 0: one a core
    std::function<bool(std::size_t done, std::size_t total)> progress; // true: stop. May be empty
};

} // namespace picture
