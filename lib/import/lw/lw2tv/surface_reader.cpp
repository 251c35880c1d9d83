#include "lib/import/lw/lw2tv/surface_reader.h"

#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/path_mapping.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lw2tv/binary_input.h"
#include "lib/import/lw/lw2tv/surface_output.h"
#include "lib/import/lw/lw2tv/texture_layers.h"
#include "lib/import/lw/lw2tv/texture_records.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/units.h"
#include "lib/toolkit/vc4_tv.h"

// The surface being read. Module-wide, so that a fatal exit leaves nothing that can't be freed.
static lw_surface_attributes attributes;
static LW_Texture_Struct* texture_list = nullptr;
static LW_Texture_Struct* current_texture = nullptr; // the newest, which T... sub-chunks refine
static char translated_name[lw_name_size];

void lw_release_surface_data()
{
    Tv_Free_Memory(attributes.reflection_map_name);
    attributes.reflection_map_name = nullptr;
    lw_free_texture_list(&texture_list);
    current_texture = nullptr;
}

static void set_start_values(const char* surface_name)
{
    lw_release_surface_data();
    attributes = {};
    attributes.glossiness = 25;
    attributes.refraction_index = 1.0f;
    attributes.smoothing_angle = lw_smoothing_angle;
    const char* const translation = Import_IO_TranslateName(lw_tokens.surface, surface_name);
    lw_copy_text(translated_name, sizeof translated_name, translation ? translation : surface_name);
}

static void read_color(std::FILE* fp)
{
    float rgb[3];
    lw_get_color(fp, rgb);
    lw_debug_printf("\t\tColor = %g %g %g\n", static_cast<double>(rgb[0]), static_cast<double>(rgb[1]),
                    static_cast<double>(rgb[2]));
    lw_output_surface_color(translated_name, rgb);
}

static void read_flags(std::FILE* fp, LW_Surface_Info* surface_info)
{
    static const char* const names[] = {"Luminous_flag",         "Outline_flag",          "Smoothing_flag",
                                        "Color_Highlights_flag", "Color_Filter_flag",     "Opaque_Edge_Flag",
                                        "Transparent_Edge_flag", "Sharp_Terminator_flag", "Double_Sided_flag",
                                        "Additive_flag"};
    const uint16_t flags = LW_GET_U2(fp);
    for (int i = 0; i < 10; ++i) lw_debug_printf("\t\t%s = %d\n", names[i], flags >> i & 1);
    if (surface_info) surface_info->smoothing_flag = flags & 0x004 ? 1 : 0;
    attributes.Color_Highlights_flag = flags & 0x008 ? 1 : 0;
    attributes.Opaque_Edge_Flag = flags & 0x020 ? 1 : 0;
    attributes.Transparent_Edge_flag = flags & 0x040 ? 1 : 0;
}

// The two forms of a coefficient feed one attribute: the one that stands later wins.
static void read_fraction(std::FILE* fp, const char* what, float* value)
{
    *value = lw_get_fraction(fp);
    lw_debug_printf("\t\t%s = %g\n", what, static_cast<double>(*value));
}

static void read_float(std::FILE* fp, const char* what, float* value)
{
    get_FLOAT(fp, 1, value); // has reported its own error
    lw_debug_printf("\t\t%s = %g\n", what, static_cast<double>(*value));
}

static void read_glossiness(std::FILE* fp)
{
    int32_t glossiness = LW_GET_U2(fp);
    if (glossiness > 300) glossiness = 300;
    if (glossiness >= 6 && glossiness <= 15) glossiness = 6;
    attributes.glossiness = glossiness;
    lw_debug_printf("\t\tGlossiness = %ld\n", static_cast<long>(glossiness));
}

static void read_reflection_map(std::FILE* fp, int32_t remaining)
{
    get_lw_string_name(fp, &attributes.reflection_map_name, &remaining);
    convert_lw_filename(&attributes.reflection_map_name, 0, 1);
    lw_debug_printf("\t\tReflection map image filename = %s\n",
                    attributes.reflection_map_name ? attributes.reflection_map_name : "");
}

static void read_smoothing_angle(std::FILE* fp)
{
    get_FLOAT(fp, 1, &attributes.smoothing_angle);
    attributes.smoothing_angle = static_cast<float>(attributes.smoothing_angle * tv::degrees_per_radian);
    lw_debug_printf("\t\tSmoothing angle = %g (degrees)\n", static_cast<double>(attributes.smoothing_angle));
}

// False for a sub-chunk that isn't the surface's own.
static bool read_attribute(std::FILE* fp, uint32_t id, uint16_t size, LW_Surface_Info* surface_info)
{
    switch (id) {
    case lw_id("COLR"): read_color(fp); break;
    case lw_id("FLAG"): read_flags(fp, surface_info); break;
    case lw_id("LUMI"): read_fraction(fp, "Luminosity", &attributes.luminosity); break;
    case lw_id("VLUM"): read_float(fp, "Luminosity", &attributes.luminosity); break;
    case lw_id("DIFF"): read_fraction(fp, "Diffuse", &attributes.diffuse); break;
    case lw_id("VDIF"): read_float(fp, "Diffuse", &attributes.diffuse); break;
    case lw_id("SPEC"): read_fraction(fp, "Specular", &attributes.specular); break;
    case lw_id("VSPC"): read_float(fp, "Specular", &attributes.specular); break;
    case lw_id("REFL"): read_fraction(fp, "Reflection", &attributes.reflection); break;
    case lw_id("VRFL"): read_float(fp, "Reflection", &attributes.reflection); break;
    case lw_id("TRAN"): read_fraction(fp, "Transparency", &attributes.transparency); break;
    case lw_id("VTRN"): read_float(fp, "Transparency", &attributes.transparency); break;
    case lw_id("GLOS"): read_glossiness(fp); break;
    case lw_id("RIMG"): read_reflection_map(fp, size); break;
    case lw_id("RFLT"): lw_skip_bytes(fp, 2); break;
    case lw_id("RSAN"): read_float(fp, "Reflection map seam angle", &attributes.seam_angle); break;
    case lw_id("RIND"): read_float(fp, "Refraction index", &attributes.refraction_index); break;
    case lw_id("EDGE"): read_float(fp, "Edge transparency threshold", &attributes.edge_threshold); break;
    case lw_id("SMAN"): read_smoothing_angle(fp); break;
    default: return false;
    }
    return true;
}

static void skip_unknown(std::FILE* fp, const char* id, uint16_t size)
{
    lw_debug_printf("\t\tUnrecognized sub-Chunk name: '%s', size = %lu\n", id, static_cast<unsigned long>(size));
    if (lw_print_warnings) {
        lw_report(LW_WARNING, "Unknown %s sub-chunk found in Lightwave file: name = '%s', size = %lu\n", "", id,
                  static_cast<unsigned long>(size));
    }
    lw_skip_bytes(fp, size);
}

// Known payloads are read by their fixed widths, whatever the size says: a wrong one leaves stream and count apart.
// False on the failure path. A sub-chunk that claims more than the chunk has left is not read at all, since after it
// the count could never come to 0.
static bool read_sub_chunks(std::FILE* fp, uint32_t chunk_remaining, LW_Surface_Info* surface_info)
{
    const uint32_t head_size = 6;
    while (chunk_remaining != 0) {
        if (std::ferror(fp) || lw_at_end_of_file(fp)) return false;
        if (chunk_remaining < head_size || chunk_remaining > INT32_MAX) return false;
        char id[5];
        LW_GET_ID(fp, id);
        const uint16_t size = LW_GET_U2(fp);
        chunk_remaining -= head_size;
        const uint32_t padded_size = uint32_t{size} + size % 2;
        if (padded_size > chunk_remaining) return false;
        const uint32_t id_number = lw_id_at(id);
        if (!read_attribute(fp, id_number, size, surface_info)) {
            switch (lw_read_texture_sub_chunk(fp, id_number, size, &texture_list, &current_texture)) {
            case LW_SUB_CHUNK_READ: break;
            case LW_SUB_CHUNK_FAILED: return false;
            case LW_SUB_CHUNK_UNKNOWN: skip_unknown(fp, id, size);
            }
        }
        if (size % 2) lw_skip_bytes(fp, 1);
        chunk_remaining -= padded_size;
    }
    return true;
}

int16_t LW_Parse_Surface_Definition(std::FILE* fp, uint32_t chunk_remaining, const char* surface_name,
                                    LW_Surface_Info* surface_info)
{
    lw_debug_printf("\tSURF chunk: Parsing surface definition '%s'\n", surface_name);
    set_start_values(surface_name);
    if (!read_sub_chunks(fp, chunk_remaining, surface_info)) {
        lw_release_surface_data();
        return 1;
    }
    if (surface_info) {
        surface_info->smoothing_angle = attributes.smoothing_angle;
        lw_classify_textures(texture_list, surface_info);
    }
    lw_output_surface_shading(translated_name, &attributes);
    lw_dump_textures(texture_list, translated_name);
    lw_output_texture_layers(translated_name, texture_list, surface_info);
    lw_output_surface_opacity(translated_name, &attributes);
    lw_release_surface_data();
    return 0;
}
