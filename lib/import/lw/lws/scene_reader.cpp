#include "lib/import/lw/lws/scene_reader.h"

#include "lib/import/lw/base/arrays.h"
#include "lib/import/lw/base/imported_instances.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/base/run_state.h"
#include "lib/import/lw/lws/backdrop.h"
#include "lib/import/lw/lws/camera.h"
#include "lib/import/lw/lws/hierarchy.h"
#include "lib/import/lw/lws/keywords.h"
#include "lib/import/lw/lws/lights.h"
#include "lib/import/lw/lws/motion.h"
#include "lib/import/lw/lws/object_list.h"
#include "lib/import/lw/lws/scene_numbers.h"
#include "lib/import/lw/lws/scene_parameters.h"
#include "lib/import/lw/lws/time_line.h"
#include "lib/import/lw/lws/tokenizer.h"
#include "lib/import/lw/lws/transforms.h"
#include "lib/platform/files.h"
#include "lib/toolkit/vc4_tv.h"

// The host is asked whether to go on at every tenth keyword.
static constexpr int16_t passes_a_poll = 10;

static int32_t file_size = 0; // bytes
static lw_motion_block stray_envelope = {};

static int16_t make_buffers()
{
    constexpr const char* no_buffer = "Out of memory while allocating space for the input file buffer.";
    constexpr const char* no_block = "LWS_IO_Alloc_File_Read_Buffer(): Could not allocate read buffer memory.";
    if (!lws_buf_io_input_buffer && !lw_try_allocate(&lws_buf_io_input_buffer, lws_block_size, no_block)) return 0;
    lws_eof_reached = false;
    lws_buf_io_chars_in_buffer = lws_buf_io_curr_buffer_offset = 0;
    if (!lw_try_allocate(&input_line_buffer, lws_line_size, no_buffer)) return 0;
    if (!lw_try_allocate(&token_buffer, lws_token_size, no_buffer)) return 0;
    if (lw_make_scene_params()) return 1;
    lw_report(LW_ERROR, "Out of memory while allocating space for the local scene parameters buffer.");
    return 0;
}

void lws_release_scene()
{
    lw_free_array(&input_line_buffer);
    lw_free_array(&token_buffer);
    curr_buf_ptr = nullptr;
    lw_free_object_list();
    lws_free_imported_list();
    lw_drop_motion(&stray_envelope);
    lw_free_scene_params();
    lw_free_array(&lws_buf_io_input_buffer);
    lws_eof_reached = false;
    lws_fp = nullptr;
}

// An envelope that no keyword took, as after a keyword that is ignored: its numbers go with it.
static int16_t drop_envelope()
{
    stray_envelope = {};
    const int16_t good = lw_parse_envelope_data(&stray_envelope);
    lw_drop_motion(&stray_envelope);
    return good;
}

// Marks the light as having values to send, where reading them went well.
static int16_t pending_light(int16_t good)
{
    if (good) scn->light_pending = 1;
    return good;
}

static int16_t drop_integer()
{
    int64_t number;
    return lws_get_long(&number);
}

static int16_t drop_float()
{
    float number;
    return lws_get_float(&number);
}

// Carries out one keyword with its operands. 0 when the read has failed.
static int16_t dispatch(int16_t keyword, const char* file_name)
{
    switch (keyword) {
    case KW_ADD_BONE: return lw_add_bone();
    case KW_ADD_LIGHT: return lw_add_light();
    case KW_ADD_NULL_OBJECT: return lw_add_null_object(file_name);
    case KW_AMBIENT_COLOR: return lw_read_ambient_color();
    case KW_AMB_INTENSITY: return lw_read_ambient_intensity();
    case KW_BACKDROP_COLOR: return lws_get_color(scn->backdrop_color);
    case KW_BG_IMAGE: return lw_read_background_image();
    case KW_CAMERA_MOTION: return lw_parse_motion_data(&scn->camera_motion);
    case KW_CONE_ANGLE: return lws_get_float(&scn->cone_angle);
    case KW_CUSTOM_SIZE: return lws_get_int16(&scn->custom_width) && lws_get_int16(&scn->custom_height);
    case KW_EDGE_ANGLE: return lws_get_float(&scn->edge_angle);
    case KW_ENVELOPE: return drop_envelope();
    case KW_FALLOFF: return lws_get_float(&scn->falloff);
    case KW_FIRST_FRAME: return lws_get_int32(&scn->first_frame);
    case KW_FRAMES_PER_SECOND: return lws_get_float(&scn->frames_per_second);
    case KW_FRAME_STEP: return drop_integer();
    case KW_GROUND_COLOR: return lws_get_color(scn->ground_color);
    case KW_LAST_FRAME: return lws_get_int32(&scn->last_frame);
    case KW_LGT_INTENSITY: return pending_light(lws_get_float(&scn->light_intensity));
    case KW_LIGHT_COLOR: return pending_light(lws_get_color(scn->light_color));
    case KW_LIGHT_MOTION: return pending_light(lw_parse_motion_data(&scn->light_motion));
    case KW_LIGHT_TYPE: return pending_light(lws_get_int16(&scn->light_type));
    case KW_LOAD_OBJECT: return lw_load_object(file_name);
    case KW_LOOK_AHEAD_FRAMES: return drop_integer();
    case KW_NADIR_COLOR: return lws_get_color(scn->nadir_color);
    case KW_OBJECT_MOTION: return lw_parse_motion_data(&scn->object_motion);
    case KW_PARENT_OBJECT: return lw_read_parent_object();
    case KW_PIVOT_POINT: return lw_read_pivot_point();
    case KW_RESOLUTION: return drop_integer();
    case KW_SHADOW_FUZZINESS: return pending_light(drop_float());
    case KW_SHADOW_MAP_SIZE: return pending_light(lws_get_int16(&scn->shadow_map_size));
    case KW_SKY_COLOR: return lws_get_color(scn->sky_color);
    case KW_SOLID_BACKDROP: return lws_get_int16(&scn->solid_backdrop);
    case KW_TARGET_OBJECT: return drop_integer();
    case KW_USE_CONE_ANGLE: return pending_light(drop_integer());
    case KW_ZENITH_COLOR: return lws_get_color(scn->zenith_color);
    case KW_ZENITH_ONLY: return lws_get_int16(&scn->zenith_only);
    case KW_ZOOM_FACTOR: return lws_get_float(&scn->zoom_factor);
    default: return 1; // known, so that it ends the search that follows an envelope's keys, and ignored
    }
}

// The whole pass. 0 when it failed; 1 at the end of the file.
static int16_t read_keywords(const char* file_name)
{
    int16_t passes = 0;
    while (!lws_eof_reached) {
        if (++passes == passes_a_poll) {
            passes = 0;
            if (lw_user_stops(static_cast<int32_t>(std::ftell(lws_fp)), file_size)) return 0;
        }
        last_token_read = lw_next_keyword();
        if (last_token_read == KW_NONE) return 1;
        if (!dispatch(last_token_read, file_name)) return 0;
    }
    return 1;
}

static void close_scene()
{
    lw_apply_transforms(current_instance_name);
    lw_update_obj_hierarchy(object_count, object_list);
    if (scn->light_pending) lw_update_light_params();
    lw_output_camera();
    lw_update_time_line();
    lw_update_background();
}

static int16_t read_scene(const char* file_name)
{
    file_size = platform::file_length(lws_fp);
    if (!make_buffers()) return 0;
    curr_buf_ptr = input_line_buffer;
    LWS_Buffered_fgets(input_line_buffer, lws_line_size, lws_fp);
    lw_make_scene_root(file_name);
    line_num = 0;
    if (!read_keywords(file_name)) return 0;
    close_scene();
    return 1;
}

int16_t LW_Read_Scene_File(std::FILE* fp, const char* file_name)
{
    lws_release_scene(); // what a fatal exit has left
    lws_fp = fp;
    const int16_t result = read_scene(file_name);
    lws_release_scene();
    return result;
}
