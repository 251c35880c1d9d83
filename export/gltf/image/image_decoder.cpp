// The decoder library, on FFmpeg's. Bytes of strangers end here: sizes are bounded before FFmpeg sees them, the formats
// are chosen by us and not by probing, and nothing but the given block of memory can be read.
#include "export/gltf/image/image_decoder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include "export/gltf/image/image_header.h"
#include "export/gltf/image/image_ilbm.h"

namespace gltf {
namespace {

using Bytes = std::span<const unsigned char>;

struct Failure {
    std::string text;
};

struct Free {
    void operator()(AVCodecContext* p) const { avcodec_free_context(&p); }
    void operator()(AVPacket* p) const { av_packet_free(&p); }
    void operator()(AVFrame* p) const { av_frame_free(&p); }
    void operator()(SwsContext* p) const { sws_freeContext(p); }
    void operator()(AVFormatContext* p) const { avformat_close_input(&p); }
    void operator()(AVIOContext* p) const
    {
        av_freep(&p->buffer);
        avio_context_free(&p);
    }
};

template <class T>
using Owned = std::unique_ptr<T, Free>;

template <class T>
Owned<T> owned(T* p)
{
    if (!p) throw std::bad_alloc();
    return Owned<T>(p);
}

void need(int code, const char* doing)
{
    if (code >= 0) return;
    if (code == AVERROR(ENOMEM)) throw std::bad_alloc();
    char why[AV_ERROR_MAX_STRING_SIZE] = "";
    av_strerror(code, why, sizeof why);
    throw Failure{std::string(doing) + ": " + why};
}

// No format packs more than some 8,000 pixels into a byte (deflate's 1032 bytes of 8 pixels each), so that a short file
// which claims a huge picture lies. Below 4 million pixels nobody is hurt.
int64_t most_pixels(std::size_t file_size)
{
    constexpr uint64_t harmless = 4u << 20, packed = 10000;
    const uint64_t most = LW_IMAGE_MAX_PIXELS;
    if (file_size >= most / packed) return static_cast<int64_t>(most);
    return static_cast<int64_t>(std::max<uint64_t>(harmless, file_size * packed));
}

void check_size(uint64_t width, uint64_t height, std::size_t file_size)
{
    const std::string size = std::to_string(width) + " x " + std::to_string(height) + " pixels";
    if (width > LW_IMAGE_MAX_SIDE || height > LW_IMAGE_MAX_SIDE)
        throw Failure{"it is " + size + ", and the limit is " + std::to_string(LW_IMAGE_MAX_SIDE) + " a side"};
    if (width * height > static_cast<uint64_t>(most_pixels(file_size)))
        throw Failure{"it claims " + size + ", which " + std::to_string(file_size) + " bytes can't hold"};
}

Owned<AVCodecContext> open_codec(AVCodecID id, const AVCodecParameters* parameters, std::size_t file_size)
{
    const AVCodec* const codec = avcodec_find_decoder(id);
    if (!codec) throw Failure{"this build of FFmpeg can't decode it"};
    Owned<AVCodecContext> context = owned(avcodec_alloc_context3(codec));
    if (parameters) need(avcodec_parameters_to_context(context.get(), parameters), "its header is damaged");
    context->thread_count = 1;
    context->max_pixels = most_pixels(file_size);
    need(avcodec_open2(context.get(), codec, nullptr), "its header is damaged");
    return context;
}

Owned<AVFrame> decode_packet(AVCodecContext& context, const AVPacket& packet)
{
    Owned<AVFrame> frame = owned(av_frame_alloc());
    need(avcodec_send_packet(&context, &packet), "it is damaged");
    int code = avcodec_receive_frame(&context, frame.get());
    if (code == AVERROR(EAGAIN)) {
        avcodec_send_packet(&context, nullptr);
        code = avcodec_receive_frame(&context, frame.get());
    }
    if (code == AVERROR_EOF || code == AVERROR(EAGAIN)) throw Failure{"it holds no picture"};
    need(code, "it is damaged");
    return frame;
}

// One packet holds the file: true of all kinds that are a single picture.
Owned<AVFrame> decode_whole(Bytes bytes, AVCodecID id)
{
    Owned<AVCodecContext> context = open_codec(id, nullptr, bytes.size());
    Owned<AVPacket> packet = owned(av_packet_alloc());
    need(av_new_packet(packet.get(), static_cast<int>(bytes.size())), "it can't be read");
    std::memcpy(packet->data, bytes.data(), bytes.size());
    return decode_packet(*context, *packet);
}

struct MemoryFile {
    Bytes bytes;
    std::size_t at = 0;
};

int read_memory(void* opaque, uint8_t* to, int size)
{
    auto& file = *static_cast<MemoryFile*>(opaque);
    const std::size_t n = std::min(file.bytes.size() - file.at, static_cast<std::size_t>(std::max(size, 0)));
    if (n == 0) return AVERROR_EOF;
    std::memcpy(to, file.bytes.data() + file.at, n);
    file.at += n;
    return static_cast<int>(n);
}

int64_t seek_memory(void* opaque, int64_t offset, int whence)
{
    auto& file = *static_cast<MemoryFile*>(opaque);
    const auto size = static_cast<int64_t>(file.bytes.size());
    if (whence & AVSEEK_SIZE) return size;
    if (whence == SEEK_CUR) offset += static_cast<int64_t>(file.at);
    if (whence == SEEK_END) offset += size;
    if (offset < 0 || offset > size) return AVERROR(EINVAL);
    file.at = static_cast<std::size_t>(offset);
    return offset;
}

int open_nothing(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**)
{
    return AVERROR(EPERM);
}

// For kinds that are containers: the first packet of their first picture stream.
Owned<AVFrame> decode_contained(Bytes bytes, const char* format_name)
{
    const AVInputFormat* const format = av_find_input_format(format_name);
    if (!format) throw Failure{"this build of FFmpeg can't read it"};
    MemoryFile file{bytes};
    constexpr int buffer_size = 32 * 1024;
    auto* const buffer = static_cast<unsigned char*>(av_malloc(buffer_size));
    if (!buffer) throw std::bad_alloc();
    AVIOContext* const raw_io = avio_alloc_context(buffer, buffer_size, 0, &file, read_memory, nullptr, seek_memory);
    if (!raw_io) {
        av_free(buffer);
        throw std::bad_alloc();
    }
    const Owned<AVIOContext> io(raw_io);
    AVFormatContext* raw_input = avformat_alloc_context();
    if (!raw_input) throw std::bad_alloc();
    raw_input->pb = io.get();
    raw_input->flags |= AVFMT_FLAG_CUSTOM_IO;
    raw_input->io_open = open_nothing;
    raw_input->protocol_whitelist = av_strdup("none");
    need(avformat_open_input(&raw_input, nullptr, format, nullptr), "its header is damaged"); // frees it on failure
    const Owned<AVFormatContext> input(raw_input);

    int picture = -1;
    for (unsigned i = 0; i < input->nb_streams && picture < 0; i++)
        if (input->streams[i]->codecpar->codec_type == AVMEDIA_TYPE_VIDEO) picture = static_cast<int>(i);
    if (picture < 0) throw Failure{"it holds no picture"};
    const AVCodecParameters* const parameters = input->streams[picture]->codecpar;
    check_size(static_cast<uint64_t>(std::max(parameters->width, 0)),
               static_cast<uint64_t>(std::max(parameters->height, 0)), bytes.size());
    Owned<AVCodecContext> context = open_codec(parameters->codec_id, parameters, bytes.size());
    Owned<AVPacket> packet = owned(av_packet_alloc());
    do {
        av_packet_unref(packet.get());
        const int code = av_read_frame(input.get(), packet.get());
        if (code == AVERROR_EOF) throw Failure{"it holds no picture"};
        need(code, "it is cut off");
    } while (packet->stream_index != picture);
    return decode_packet(*context, *packet);
}

Owned<AVFrame> decode_frame(Bytes bytes, ImageKind kind)
{
    switch (kind) {
    case ImageKind::iff: return decode_contained(complete_ilbm(bytes).view(bytes), "iff");
    case ImageKind::gif: return decode_contained(bytes, "gif");
    case ImageKind::png: return decode_whole(bytes, AV_CODEC_ID_PNG);
    case ImageKind::jpeg: return decode_whole(bytes, AV_CODEC_ID_MJPEG);
    case ImageKind::tga: return decode_whole(bytes, AV_CODEC_ID_TARGA);
    case ImageKind::bmp: return decode_whole(bytes, AV_CODEC_ID_BMP);
    case ImageKind::tiff: return decode_whole(bytes, AV_CODEC_ID_TIFF);
    case ImageKind::pcx: return decode_whole(bytes, AV_CODEC_ID_PCX);
    case ImageKind::sgi: return decode_whole(bytes, AV_CODEC_ID_SGI);
    case ImageKind::unknown: break;
    }
    throw Failure{"it is none of the image formats that can be read"};
}

bool may_have_alpha(const AVFrame& frame)
{
    if (frame.format == AV_PIX_FMT_PAL8) {
        const uint32_t* const palette = reinterpret_cast<const uint32_t*>(frame.data[1]);
        return palette && std::any_of(palette, palette + 256, [](uint32_t color) { return color >> 24 != 0xff; });
    }
    const AVPixFmtDescriptor* const description = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    return description && (description->flags & AV_PIX_FMT_FLAG_ALPHA);
}

void convert(const AVFrame& frame, Lw_Decoded_Image& out)
{
    const std::size_t row = std::size_t{4} * static_cast<std::size_t>(frame.width);
    // 64 bytes more than the rows take: the converters' wide stores may run past the end of the last one.
    std::unique_ptr<unsigned char, decltype(&std::free)> pixels(
        static_cast<unsigned char*>(std::malloc(row * static_cast<std::size_t>(frame.height) + 64)), &std::free);
    if (!pixels) throw std::bad_alloc();
    const Owned<SwsContext> context = owned(sws_alloc_context());
    av_opt_set_int(context.get(), "srcw", frame.width, 0);
    av_opt_set_int(context.get(), "srch", frame.height, 0);
    av_opt_set_int(context.get(), "dstw", frame.width, 0);
    av_opt_set_int(context.get(), "dsth", frame.height, 0);
    av_opt_set_int(context.get(), "src_format", frame.format, 0);
    av_opt_set_int(context.get(), "dst_format", AV_PIX_FMT_RGBA, 0);
    av_opt_set_int(context.get(), "src_range", frame.color_range == AVCOL_RANGE_JPEG, 0);
    av_opt_set_int(context.get(), "dst_range", 1, 0);
    av_opt_set_int(context.get(), "sws_flags",
                   SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP, 0);
    need(sws_init_context(context.get(), nullptr, nullptr), "its colours can't be converted");
    unsigned char* const planes[4] = {pixels.get(), nullptr, nullptr, nullptr};
    const int strides[4] = {static_cast<int>(row), 0, 0, 0};
    const int rows = sws_scale(context.get(), frame.data, frame.linesize, 0, frame.height, planes, strides);
    if (rows != frame.height) throw Failure{"its colours can't be converted"};
    out.kept_alpha = may_have_alpha(frame);
    out.width = static_cast<uint32_t>(frame.width);
    out.height = static_cast<uint32_t>(frame.height);
    out.rgba = pixels.release();
}

void decode(Bytes bytes, Lw_Decoded_Image& out)
{
    const ImageHeader header = read_image_header(bytes);
    check_size(header.width, header.height, bytes.size());
    const Owned<AVFrame> frame = decode_frame(bytes, header.kind);
    if (frame->width <= 0 || frame->height <= 0) throw Failure{"it holds no picture"};
    check_size(static_cast<uint64_t>(frame->width), static_cast<uint64_t>(frame->height), bytes.size());
    convert(*frame, out);
}

} // namespace
} // namespace gltf

extern "C" {

__attribute__((visibility("default"))) int32_t lw_decode_image(const unsigned char* bytes, size_t size,
                                                               Lw_Decoded_Image* out, char* error, size_t error_size)
{
    *out = {};
    std::string text;
    try {
        av_log_set_level(AV_LOG_QUIET);
        gltf::decode({bytes, size}, *out);
        return 1;
    } catch (const gltf::Failure& failure) {
        text = failure.text;
    } catch (const std::exception&) { // no memory
        text = "there is not enough memory for it";
    }
    std::snprintf(error, error_size, "%s", text.c_str());
    return 0;
}

__attribute__((visibility("default"))) void lw_free_image(Lw_Decoded_Image* image)
{
    std::free(image->rgba);
    image->rgba = nullptr;
}
}
