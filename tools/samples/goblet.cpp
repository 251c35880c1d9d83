// A turned piece with three surfaces: silver that mirrors, glass, and red wine. Smoothed up to 40 degrees, so that the
// edges of foot and rim stay edges.
#include "tools/samples/samples.h"
#include "tools/samples/shapes.h"

namespace samples {

void write_goblet(const std::string& directory)
{
    Model model;
    const int silver = model.surface(plain_surface("Silver foot", {.red = 214,
                                                                   .green = 214,
                                                                   .blue = 220,
                                                                   .diffuse = 0.3,
                                                                   .specular = 0.9,
                                                                   .reflection = 0.85,
                                                                   .glossiness = 256,
                                                                   .smoothing_angle = 40,
                                                                   .flags = 8}));
    const int glass = model.surface(plain_surface("Crystal bowl", {.red = 225,
                                                                   .green = 240,
                                                                   .blue = 245,
                                                                   .diffuse = 0.5,
                                                                   .specular = 1,
                                                                   .reflection = 0.15,
                                                                   .transparency = 0.8,
                                                                   .glossiness = 256,
                                                                   .refraction = 1.5,
                                                                   .smoothing_angle = 40}));
    const int wine = model.surface(plain_surface("Red wine", {.red = 120,
                                                              .green = 8,
                                                              .blue = 28,
                                                              .diffuse = 0.9,
                                                              .specular = 0.6,
                                                              .glossiness = 128,
                                                              .smoothing_angle = 40}));
    constexpr int segments = 48;
    model.lathe(
        {
            {0.00, 0.00, silver}, {0.62, 0.00, silver}, {0.62, 0.05, silver}, {0.50, 0.09, silver},
            {0.30, 0.14, silver}, {0.14, 0.22, silver}, {0.08, 0.34, silver}, {0.07, 0.52, silver},
            {0.13, 0.58, silver}, {0.15, 0.64, silver}, {0.13, 0.70, silver}, {0.07, 0.76, silver},
            {0.07, 0.92, silver}, {0.10, 1.00, glass},  {0.28, 1.06, glass},  {0.44, 1.16, glass},
            {0.54, 1.30, glass},  {0.58, 1.48, glass},  {0.57, 1.68, glass},  {0.53, 1.88, glass},
            {0.50, 2.00, glass},  {0.47, 2.00, glass},  {0.50, 1.88, glass},  {0.54, 1.68, glass},
            {0.55, 1.50, glass},
        },
        segments);
    // The wine fills the bowl from here down: a level top, and the body that shows through the glass.
    model.lathe({{0.00, 1.11, wine},
                 {0.27, 1.12, wine},
                 {0.41, 1.20, wine},
                 {0.50, 1.33, wine},
                 {0.545, 1.49, wine},
                 {0.00, 1.49, wine}},
                segments);
    model.write(directory + "/goblet_three_surfaces_smooth.lwo");
}

} // namespace samples
