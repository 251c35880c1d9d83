#include "export/picture/file/png_file.h"

#include <csetjmp>
#include <exception>
#include <stdexcept>

#include <png.h>

#include "lib/platform/atomic_file.h"

namespace picture {

namespace {

// Between us and libpng, which leaves by longjmp: no frame of it may be crossed by an exception.
struct Sink {
    platform::AtomicFile& file;
    std::exception_ptr failure;
};

void write_some(png_structp png, png_bytep data, png_size_t size)
{
    auto& sink = *static_cast<Sink*>(png_get_io_ptr(png));
    try {
        sink.file.write(data, size);
        return;
    } catch (...) {
        sink.failure = std::current_exception();
    }
    png_error(png, "write");
}

void flush_nothing(png_structp) {}

void stay_silent(png_structp, png_const_charp) {}

// These three hold nothing with a destructor.
bool write_head(png_structp png, png_infop info, uint32_t width, uint32_t height, bool alpha, Sink* sink)
{
    if (setjmp(png_jmpbuf(png))) return false;
    png_set_write_fn(png, sink, write_some, flush_nothing);
    png_set_user_limits(png, 0x7fffffff, 0x7fffffff);
    png_set_IHDR(png, info, width, height, 8, alpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_sRGB(png, info, PNG_sRGB_INTENT_PERCEPTUAL);
    png_set_compression_level(png, 5);
    png_set_compression_buffer_size(png, 64 * 1024);
    png_write_info(png, info);
    if (!alpha) png_set_filler(png, 0, PNG_FILLER_AFTER);
    return true;
}

bool write_rows(png_structp png, const unsigned char* rgba, uint32_t rows, std::size_t row)
{
    if (setjmp(png_jmpbuf(png))) return false;
    for (uint32_t y = 0; y < rows; ++y) png_write_row(png, rgba + y * row);
    return true;
}

bool write_end(png_structp png)
{
    if (setjmp(png_jmpbuf(png))) return false;
    png_write_end(png, nullptr);
    return true;
}

struct Handles {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, stay_silent);
    png_infop info = png ? png_create_info_struct(png) : nullptr;

    Handles() = default;
    Handles(const Handles&) = delete;
    Handles& operator=(const Handles&) = delete;
    ~Handles() { png_destroy_write_struct(&png, &info); }
};

class PngFile : public PictureFile {
public:
    PngFile(const std::filesystem::path& target, uint32_t width, uint32_t height, bool alpha)
        : file_(target), sink_{file_, {}}, shown_(target.string()), row_(std::size_t{width} * 4)
    {
        must(library_.info && write_head(library_.png, library_.info, width, height, alpha, &sink_));
    }

    void write(const unsigned char* rgba, uint32_t rows) override { must(write_rows(library_.png, rgba, rows, row_)); }
    void finish() override
    {
        must(write_end(library_.png));
        file_.commit();
    }

private:
    void must(bool good)
    {
        if (good) return;
        if (sink_.failure) std::rethrow_exception(sink_.failure);
        throw std::runtime_error("can't make the PNG picture '" + shown_ + "'");
    }

    platform::AtomicFile file_;
    Sink sink_;
    std::string shown_;
    std::size_t row_;
    Handles library_;
};

} // namespace

std::unique_ptr<PictureFile> make_png_file(const std::filesystem::path& target, uint32_t width, uint32_t height,
                                           bool alpha)
{
    return std::make_unique<PngFile>(target, width, height, alpha);
}

} // namespace picture
