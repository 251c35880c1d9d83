/* The image decoder, a library of its own that is loaded when the first image is needed: what it stands on takes
 * longer to load than a small scene takes to convert. Plain C, so that it can be found by name.
 */
#ifndef EXPORT_GLTF_IMAGE_DECODER_H
#define EXPORT_GLTF_IMAGE_DECODER_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define LW_IMAGE_MAX_SIDE 16384u
#define LW_IMAGE_MAX_PIXELS (16384ull * 16384ull)

typedef struct Lw_Decoded_Image {
    uint32_t width, height;
    unsigned char* rgba; /* rows from the top, 4 bytes per pixel, without gaps; goes back by lw_free_image */
    int32_t kept_alpha;  /* the file has an alpha channel or a transparent colour, and it is in `rgba` */
} Lw_Decoded_Image;

/* Decodes the first picture of a file in memory. Never reads anything else. 1: done; 0: `error` holds why, one short
 * line of ASCII without the file's name. The kind is told from the content; what it claims is bounded before any
 * memory is asked for. */
typedef int32_t (*Lw_Decode_Image)(const unsigned char* bytes, size_t size, Lw_Decoded_Image* out, char* error,
                                   size_t error_size);
typedef void (*Lw_Free_Image)(Lw_Decoded_Image* image);

#define LW_DECODE_IMAGE_NAME "lw_decode_image"
#define LW_FREE_IMAGE_NAME "lw_free_image"

#ifdef __cplusplus
}
#endif

#endif
