#include "export/picture/file/jpeg_file.h"

#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <exception>
#include <stdexcept>

#include <jpeglib.h>

#include "lib/platform/atomic_file.h"

namespace picture {

namespace {

constexpr int quality = 92;

struct Errors {
    jpeg_error_mgr base; // first: libjpeg knows no more of it
    std::jmp_buf leave;
};

[[noreturn]] void leave_library(j_common_ptr jpeg)
{
    std::longjmp(reinterpret_cast<Errors*>(jpeg->err)->leave, 1);
}

void stay_silent(j_common_ptr, int) {}

// libjpeg asks for room and hands it back full. It leaves by longjmp: no frame of it may be crossed by an exception.
struct Sink {
    jpeg_destination_mgr base; // first, likewise
    platform::AtomicFile* file;
    std::exception_ptr* failure;
    std::array<JOCTET, 64 * 1024>* room;
};

bool hand_over(Sink& sink, std::size_t size)
{
    try {
        sink.file->write(sink.room->data(), size);
        return true;
    } catch (...) {
        *sink.failure = std::current_exception();
        return false;
    }
}

void offer_room(j_compress_ptr jpeg)
{
    auto& sink = *reinterpret_cast<Sink*>(jpeg->dest);
    sink.base.next_output_byte = sink.room->data();
    sink.base.free_in_buffer = sink.room->size();
}

boolean take_full(j_compress_ptr jpeg)
{
    auto& sink = *reinterpret_cast<Sink*>(jpeg->dest);
    if (!hand_over(sink, sink.room->size())) leave_library(reinterpret_cast<j_common_ptr>(jpeg));
    offer_room(jpeg);
    return TRUE;
}

void take_rest(j_compress_ptr jpeg)
{
    auto& sink = *reinterpret_cast<Sink*>(jpeg->dest);
    if (!hand_over(sink, sink.room->size() - sink.base.free_in_buffer))
        leave_library(reinterpret_cast<j_common_ptr>(jpeg));
}

// These three hold nothing with a destructor.
bool begin(jpeg_compress_struct& jpeg, Errors& errors, Sink& sink, uint32_t width, uint32_t height)
{
    if (setjmp(errors.leave)) return false;
    jpeg_create_compress(&jpeg);
    jpeg.dest = &sink.base;
    jpeg.image_width = width;
    jpeg.image_height = height;
    jpeg.input_components = 4;
    jpeg.in_color_space = JCS_EXT_RGBX;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, quality, TRUE);
    // Colour as fine as brightness: the thin red and blue lines of old pictures smear otherwise.
    for (int i = 0; i < jpeg.num_components; ++i) jpeg.comp_info[i].h_samp_factor = jpeg.comp_info[i].v_samp_factor = 1;
    jpeg_start_compress(&jpeg, TRUE);
    return true;
}

bool write_rows(jpeg_compress_struct& jpeg, Errors& errors, const unsigned char* rgba, uint32_t rows, std::size_t row)
{
    if (setjmp(errors.leave)) return false;
    for (uint32_t y = 0; y < rows; ++y) {
        JSAMPROW line = const_cast<JSAMPROW>(rgba + y * row);
        jpeg_write_scanlines(&jpeg, &line, 1);
    }
    return true;
}

bool end(jpeg_compress_struct& jpeg, Errors& errors)
{
    if (setjmp(errors.leave)) return false;
    jpeg_finish_compress(&jpeg);
    return true;
}

class JpegFile : public PictureFile {
public:
    JpegFile(const std::filesystem::path& target, uint32_t width, uint32_t height)
        : file_(target), shown_(target.string()), row_(std::size_t{width} * 4)
    {
        std::memset(&jpeg_, 0, sizeof jpeg_);
        jpeg_.err = jpeg_std_error(&errors_.base);
        errors_.base.error_exit = leave_library;
        errors_.base.emit_message = stay_silent;
        sink_.base.init_destination = offer_room;
        sink_.base.empty_output_buffer = take_full;
        sink_.base.term_destination = take_rest;
        sink_.file = &file_;
        sink_.failure = &failure_;
        sink_.room = &room_;
        if (width > JPEG_MAX_DIMENSION || height > JPEG_MAX_DIMENSION)
            throw std::runtime_error("a JPEG picture has at most " + std::to_string(JPEG_MAX_DIMENSION) +
                                     " pixels on a side: '" + shown_ + "'");
        if (begin(jpeg_, errors_, sink_, width, height)) return;
        jpeg_destroy_compress(&jpeg_);
        fail();
    }
    JpegFile(const JpegFile&) = delete;
    JpegFile& operator=(const JpegFile&) = delete;
    ~JpegFile() override { jpeg_destroy_compress(&jpeg_); }

    void write(const unsigned char* rgba, uint32_t rows) override
    {
        if (!write_rows(jpeg_, errors_, rgba, rows, row_)) fail();
    }
    void finish() override
    {
        if (!end(jpeg_, errors_)) fail();
        file_.commit();
    }

private:
    [[noreturn]] void fail()
    {
        if (failure_) std::rethrow_exception(failure_);
        throw std::runtime_error("can't make the JPEG picture '" + shown_ + "'");
    }

    platform::AtomicFile file_;
    std::string shown_;
    std::size_t row_;
    std::exception_ptr failure_;
    std::array<JOCTET, 64 * 1024> room_{};
    jpeg_compress_struct jpeg_;
    Errors errors_;
    Sink sink_;
};

} // namespace

std::unique_ptr<PictureFile> make_jpeg_file(const std::filesystem::path& target, uint32_t width, uint32_t height)
{
    return std::make_unique<JpegFile>(target, width, height);
}

} // namespace picture
