// Every kind of picture comes out with the right pixels, and broken ones with a reason.
#include "export/gltf/image/image_header.h"
#include "export/gltf/image/image_library.h"
#include "export/gltf/image/image_png.h"
#include "tests/export/picture_files.h"
#include "tools/ilbm_writer.h"

#include <gmock/gmock.h>
#include <random>

using gltf::decode_image;
using gltf::DecodeResult;
using lw_tools::Ilbm;
using test::bytes;
using Color = std::array<unsigned char, 3>;

namespace {

Color color_at(const DecodeResult& image, unsigned x, unsigned y)
{
    if (x >= image.pixels.width || y >= image.pixels.height) return {1, 2, 3};
    const unsigned char* const p = image.pixels.at(x, y);
    return {p[0], p[1], p[2]};
}

std::vector<Color> row_of(const DecodeResult& image, unsigned y)
{
    std::vector<Color> row;
    for (unsigned x = 0; x < image.pixels.width; x++) row.push_back(color_at(image, x, y));
    return row;
}

std::vector<Color> rainbow(unsigned count)
{
    std::vector<Color> palette;
    for (unsigned i = 0; i < count; i++)
        palette.push_back({static_cast<unsigned char>(i * 7), static_cast<unsigned char>(255 - i),
                           static_cast<unsigned char>(i * 31)});
    return palette;
}

DecodeResult decode(const std::string& file)
{
    return decode_image(bytes(file));
}

} // namespace

TEST(Ilbm, OneToEightPlanesPackedOrNot)
{
    for (unsigned planes = 1; planes <= 8; planes++) {
        for (const bool packed : {false, true}) {
            SCOPED_TRACE(std::to_string(planes) + (packed ? " packed" : ""));
            Ilbm picture;
            picture.width = 37; // no multiple of 16: rows have fill bits
            picture.height = 5;
            picture.planes = planes;
            picture.packed = packed;
            picture.camg = true; // 6 and 8 planes that are neither HAM nor half-brite
            picture.palette = rainbow(1u << planes);
            for (unsigned i = 0; i < picture.width * picture.height; i++)
                picture.values.push_back((i / 3 * 5 + i / 20) % (1u << planes)); // runs and singles
            const DecodeResult image = decode(ilbm_file(picture));
            ASSERT_EQ(image.error, "");
            ASSERT_EQ(image.pixels.width, 37u);
            ASSERT_EQ(image.pixels.height, 5u);
            for (unsigned y = 0; y < 5; y++)
                for (unsigned x = 0; x < 37; x++)
                    ASSERT_EQ(color_at(image, x, y), picture.palette[picture.values[y * 37 + x]]) << x << ' ' << y;
        }
    }
}

TEST(Ilbm, MaskPlaneIsPassedOver)
{
    Ilbm picture{3, 2, 2, rainbow(4), {0, 1, 2, 3, 2, 1}, true, true};
    const DecodeResult image = decode(ilbm_file(picture));
    ASSERT_EQ(image.error, "");
    for (unsigned i = 0; i < 6; i++) EXPECT_EQ(color_at(image, i % 3, i / 3), picture.palette[picture.values[i]]) << i;
}

TEST(Ilbm, HalfBriteHasTheDarkTwinsOfItsColors)
{
    Ilbm picture{4, 1, 6, rainbow(32), {1, 33, 31, 63}};
    for (const bool stated : {true, false}) { // without CAMG the short palette tells
        picture.camg = stated;
        picture.mode = 0x80;
        const DecodeResult image = decode(ilbm_file(picture));
        ASSERT_EQ(image.error, "");
        const Color one = picture.palette[1], last = picture.palette[31];
        const auto half = [](Color c) {
            for (unsigned char& x : c) x = static_cast<unsigned char>(x / 2);
            return c;
        };
        EXPECT_THAT(row_of(image, 0), testing::ElementsAre(one, half(one), last, half(last))) << stated;
    }
}

TEST(Ilbm, Ham6HoldsTwoAndModifiesOne)
{
    // 00: a colour of the palette; 01: blue, 10: red, 11: green get the four bits, the others stay.
    Ilbm picture{6, 2, 6, rainbow(16), {0x03, 0x10 | 9, 0x20 | 15, 0x30 | 0, 0x05, 0x10 | 1}};
    picture.palette[3] = {0x30, 0x40, 0x50};
    picture.values.insert(picture.values.end(), {0x20 | 8, 0x01, 0x01, 0x01, 0x01, 0x01}); // begins with colour 0
    const Color zero = picture.palette[0], one = picture.palette[1], five = picture.palette[5];
    for (const bool stated : {true, false}) {
        picture.camg = stated;
        picture.mode = 0x800;
        const DecodeResult image = decode(ilbm_file(picture));
        ASSERT_EQ(image.error, "");
        EXPECT_THAT(row_of(image, 0),
                    testing::ElementsAre(Color{0x30, 0x40, 0x50}, Color{0x30, 0x40, 0x99}, Color{0xff, 0x40, 0x99},
                                         Color{0xff, 0x00, 0x99}, five, Color{five[0], five[1], 0x11}));
        EXPECT_THAT(row_of(image, 1), testing::ElementsAre(Color{0x88, zero[1], zero[2]}, one, one, one, one, one));
    }
}

TEST(Ilbm, Ham8ModifiesTheUpperSixBits)
{
    Ilbm picture{5, 1, 8, rainbow(64), {63, 0x40 | 63, 0x80 | 0, 0xc0 | 32, 2}, true};
    const Color last = picture.palette[63];
    for (const bool stated : {true, false}) {
        picture.camg = stated;
        picture.mode = 0x800;
        const DecodeResult image = decode(ilbm_file(picture));
        ASSERT_EQ(image.error, "");
        const std::vector<Color> row = row_of(image, 0);
        // Whether the two low bits are kept or filled differs between programs; the six that are stated don't.
        const auto six = [](Color c) {
            for (unsigned char& x : c) x = static_cast<unsigned char>(x & 0xfc);
            return c;
        };
        ASSERT_EQ(row.size(), 5u);
        EXPECT_EQ(row[0], last);
        EXPECT_EQ(six(row[1]), six({last[0], last[1], 0xff}));
        EXPECT_EQ(six(row[2]), six({0, last[1], 0xff}));
        EXPECT_EQ(six(row[3]), six({0, 0x80, 0xff}));
        EXPECT_EQ(row[4], picture.palette[2]);
    }
}

TEST(Ilbm, ByteAPixelOfThePc)
{
    for (const bool packed : {false, true}) {
        Ilbm picture{3, 2, 8, rainbow(256), {0, 200, 3, 255, 255, 255}, packed};
        picture.type = "PBM ";
        const DecodeResult image = decode(ilbm_file(picture));
        ASSERT_EQ(image.error, "");
        for (unsigned i = 0; i < 6; i++)
            EXPECT_EQ(color_at(image, i % 3, i / 3), picture.palette[picture.values[i]]) << i;
    }
}

TEST(Ilbm, TwentyFourPlanes)
{
    for (const bool packed : {false, true}) {
        Ilbm picture{3, 2, 24, {}, {0x030201, 0xff0000, 0x00ff00, 0x0000ff, 0xffffff, 0x804020}, packed};
        const DecodeResult image = decode(ilbm_file(picture));
        ASSERT_EQ(image.error, "");
        EXPECT_THAT(row_of(image, 0), testing::ElementsAre(Color{1, 2, 3}, Color{0, 0, 255}, Color{0, 255, 0}));
        EXPECT_THAT(row_of(image, 1),
                    testing::ElementsAre(Color{255, 0, 0}, Color{255, 255, 255}, Color{0x20, 0x40, 0x80}));
    }
}

TEST(Ilbm, EveryPrefixEndsInAPictureOrAReason)
{
    Ilbm picture{9, 4, 6, rainbow(16), std::vector<uint32_t>(36, 5), true};
    picture.camg = true;
    picture.mode = 0x800;
    const std::string whole = lw_tools::ilbm_file(picture);
    for (std::size_t n = 0; n < whole.size(); n++) {
        const std::vector<unsigned char> part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n));
        const DecodeResult image = decode_image(part);
        EXPECT_NE(image.error.empty(), image.pixels.rgba.empty()) << n;
    }
}

TEST(Ilbm, EveryByteReplacedEndsInAPictureOrAReason)
{
    const std::string whole = lw_tools::ilbm_file({9, 4, 4, rainbow(16), std::vector<uint32_t>(36, 5), true});
    for (std::size_t i = 0; i < whole.size(); i++)
        for (const int value : {0x00, 0x7f, 0xff}) {
            std::string changed = whole;
            changed[i] = static_cast<char>(value);
            const DecodeResult image = decode(changed);
            EXPECT_NE(image.error.empty(), image.pixels.rgba.empty()) << i;
        }
}

// Files of 2 x 2 pixels: red, green / blue, white.
struct Kind {
    const char* name;
    std::string file;
    gltf::ImageKind kind;
    int tolerance = 0;
};

void PrintTo(const Kind& kind, std::ostream* to)
{
    *to << kind.name;
}

class EachKind : public testing::TestWithParam<Kind> {};

TEST_P(EachKind, DecodesToItsPixels)
{
    const Kind& kind = GetParam();
    EXPECT_EQ(gltf::read_image_header(bytes(kind.file)).kind, kind.kind);
    const DecodeResult image = decode(kind.file);
    ASSERT_EQ(image.error, "");
    ASSERT_EQ(image.pixels.width, 2u);
    ASSERT_EQ(image.pixels.height, 2u);
    const Color expected[] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}};
    for (unsigned i = 0; i < 4; i++) EXPECT_EQ(color_at(image, i % 2, i / 2), expected[i]) << i;
}

TEST_P(EachKind, EveryPrefixEndsInAPictureOrAReason)
{
    const std::string& whole = GetParam().file;
    for (std::size_t n = 0; n < whole.size(); n++) {
        const std::vector<unsigned char> part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n));
        const DecodeResult image = decode_image(part);
        EXPECT_NE(image.error.empty(), image.pixels.rgba.empty()) << n;
    }
}

INSTANTIATE_TEST_SUITE_P(Images, EachKind,
                         testing::Values(Kind{"png", test::four_colors_png(), gltf::ImageKind::png},
                                         Kind{"bmp", test::four_colors_bmp(), gltf::ImageKind::bmp},
                                         Kind{"targa", test::four_colors_targa(24, false), gltf::ImageKind::tga},
                                         Kind{"targa32", test::four_colors_targa(32, false), gltf::ImageKind::tga},
                                         Kind{"targa_rle", test::four_colors_targa(24, true), gltf::ImageKind::tga},
                                         Kind{"gif", test::four_colors_gif(), gltf::ImageKind::gif},
                                         Kind{"tiff", test::four_colors_tiff(), gltf::ImageKind::tiff},
                                         Kind{"pcx", test::four_colors_pcx(), gltf::ImageKind::pcx}),
                         [](const auto& the) { return std::string(the.param.name); });

TEST(Jpeg, IsReadAndItsFrameKnown)
{
    const std::string file = test::grey_jpeg();
    const gltf::JpegFrame frame = gltf::read_jpeg_frame(bytes(file));
    EXPECT_EQ(frame.width, 8u);
    EXPECT_EQ(frame.components, 1u);
    EXPECT_TRUE(frame.usual_coding && frame.complete);
    const DecodeResult image = decode(file);
    ASSERT_EQ(image.error, "");
    EXPECT_EQ(image.pixels.width, 8u);
    EXPECT_EQ(color_at(image, 3, 3), (Color{128, 128, 128}));
}

// Heads that claim what isn't there must be refused before memory is asked for: the address sanitizer's own limit
// would end the test.
TEST(Lies, AreRefusedWithTheirSize)
{
    const auto refused = [](const std::string& file, const char* why) {
        const DecodeResult image = decode(file);
        EXPECT_THAT(image.error, testing::HasSubstr(why));
        EXPECT_TRUE(image.pixels.rgba.empty());
    };
    Ilbm picture{16, 1, 1, rainbow(2), std::vector<uint32_t>(16)};
    std::string ilbm = lw_tools::ilbm_file(picture);
    const std::size_t header = ilbm.find("BMHD") + 8;
    ilbm.replace(header, 4, "\xff\xff\xff\xff", 4);
    refused(ilbm, "65535 x 65535");
    ilbm.replace(header, 4, "\x40\x00\x40\x00", 4); // 16384 a side, from a hundred bytes
    refused(ilbm, "can't hold");

    std::string png = test::four_colors_png();
    png.replace(16, 8, "\x7f\xff\xff\xff\x7f\xff\xff\xff", 8);
    refused(png, "the limit is 16384");
    std::string targa = test::four_colors_targa(24, true);
    targa.replace(12, 4, "\x00\x40\x00\x40", 4);
    refused(targa, "can't hold");
    refused("This is no image at all, but a text of some length.", "none of the image formats");
    refused("", "none of the image formats");
}

TEST(Lies, IffSoundIsNoPicture)
{
    const DecodeResult image = decode(std::string("FORM\0\0\0\x0c"
                                                  "8SVXVHDR\0\0\0\0",
                                                  20));
    EXPECT_FALSE(image.error.empty());
}

TEST(Png, EncodedAndDecodedIsTheSame)
{
    // One column, a few pixels, more than a chunk of noise.
    for (const auto& [width, height] : {std::pair(1u, 9u), {5u, 3u}, {400u, 300u}}) {
        SCOPED_TRACE(width);
        gltf::Pixels pixels = gltf::make_pixels(width, height);
        std::minstd_rand random(7);
        for (std::size_t i = 0; i < pixels.rgba.size(); i++)
            pixels.rgba[i] = i % 4 == 3 ? 255 : static_cast<unsigned char>(random() >> 8);
        for (const unsigned char alpha : std::initializer_list<unsigned char>{255, 7}) {
            pixels.at(0, 1)[3] = alpha;
            const std::vector<unsigned char> file = gltf::encode_png(pixels);
            EXPECT_EQ(file[25], alpha == 255 ? 2 : 6) << "colour type: an alpha channel only where it is needed";
            const DecodeResult image = decode_image(file);
            ASSERT_EQ(image.error, "");
            EXPECT_EQ(image.pixels.rgba, pixels.rgba);
            EXPECT_EQ(image.has_alpha, alpha != 255);
        }
    }
}

TEST(Kept, PngWithoutWhatViewersDisagreeAbout)
{
    const std::string plain = test::four_colors_png();
    std::string gamma = plain;
    gamma.insert(33, std::string("\0\0\0\x04gAMA\0\0\xb1\x8f\x0b\xfc\x61\x05", 16)); // after IHDR
    const auto kept = gltf::keep_png(bytes(gamma));
    ASSERT_TRUE(kept);
    EXPECT_EQ(*kept, bytes(plain));
    EXPECT_FALSE(gltf::keep_png(bytes(plain.substr(0, plain.size() - 1)))) << "cut off";
    std::string damaged = plain;
    damaged[45] = static_cast<char>(damaged[45] ^ 1);
    EXPECT_FALSE(gltf::keep_png(bytes(damaged)));
    gltf::Pixels clear = gltf::make_pixels(1, 1);
    EXPECT_FALSE(gltf::keep_png(gltf::encode_png(clear))) << "alpha";
}

TEST(Kept, JpegWithoutProfilesAndNotWhenCutOff)
{
    const std::string plain = test::grey_jpeg();
    std::string profiled = plain;
    profiled.insert(2, std::string("\xff\xe2\x00\x06"
                                   "ICC!\xff\xfe\x00\x04hi",
                                   14));
    const auto kept = gltf::keep_jpeg(bytes(profiled)), same = gltf::keep_jpeg(bytes(plain));
    ASSERT_TRUE(kept && same);
    EXPECT_EQ(*kept, *same);
    EXPECT_EQ(decode_image(*kept).error, "");
    EXPECT_FALSE(gltf::keep_jpeg(bytes(plain.substr(0, plain.size() - 2))));
    for (std::size_t n = 0; n < plain.size(); n++) gltf::keep_jpeg(bytes(plain.substr(0, n))); // no read beyond
}

TEST(Shrinking, EachPixelIsTheMeanOfItsArea)
{
    gltf::Pixels pixels = gltf::make_pixels(6, 2);
    for (uint32_t x = 0; x < 6; x++)
        for (uint32_t y = 0; y < 2; y++) pixels.at(x, y)[0] = static_cast<unsigned char>(x * 20 + y * 10);
    gltf::shrink_to(pixels, 3);
    ASSERT_EQ(pixels.width, 3u);
    ASSERT_EQ(pixels.height, 1u);
    for (uint32_t x = 0; x < 3; x++) EXPECT_EQ(pixels.at(x, 0)[0], x * 40 + 15) << x;
    gltf::shrink_to(pixels, 2); // 1.5 old pixels a new one: 15, 55, 95
    EXPECT_EQ(pixels.width, 2u);
    EXPECT_EQ(pixels.at(0, 0)[0], 28u); // (15 + 55 / 2) / 1.5
    EXPECT_EQ(pixels.at(1, 0)[0], 82u);
    gltf::Pixels thin = gltf::make_pixels(1000, 1);
    gltf::shrink_to(thin, 10);
    EXPECT_EQ(thin.height, 1u);
}
