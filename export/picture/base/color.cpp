#include "export/picture/base/color.h"

#include <cmath>

namespace picture {

namespace {

double to_linear(double screen)
{
    return screen <= 0.04045 ? screen / 12.92 : std::pow((screen + 0.055) / 1.055, 2.4);
}

// Linear values from which each byte is the right one, and for equal steps of the linear value a byte that is not too
// large there: a power for every pixel would take longer than many a picture.
struct Steps {
    static constexpr std::size_t count = 4096;
    std::array<float, 256> from{};
    std::array<uint8_t, count + 1> start{};

    Steps()
    {
        for (std::size_t i = 0; i < 256; ++i)
            from[i] = i == 0 ? 0.0f : static_cast<float>(to_linear((static_cast<double>(i) - 0.5) / 255));
        std::size_t byte = 0;
        for (std::size_t i = 0; i <= count; ++i) {
            while (byte < 255 && from[byte + 1] <= static_cast<float>(i) / static_cast<float>(count)) ++byte;
            start[i] = static_cast<uint8_t>(byte);
        }
    }
};

} // namespace

const std::array<float, 256>& linear_of_screen()
{
    static const std::array<float, 256> table = [] {
        std::array<float, 256> result{};
        for (std::size_t i = 0; i < 256; ++i) result[i] = static_cast<float>(to_linear(static_cast<double>(i) / 255));
        return result;
    }();
    return table;
}

uint8_t screen_of(float linear)
{
    static const Steps steps;
    if (!(linear > 0)) return 0;
    if (linear >= 1) return 255;
    uint8_t byte = steps.start[static_cast<std::size_t>(linear * static_cast<float>(Steps::count))];
    while (byte < 255 && linear >= steps.from[byte + 1u]) ++byte;
    return byte;
}

} // namespace picture
