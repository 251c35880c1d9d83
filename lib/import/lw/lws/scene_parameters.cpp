#include "lib/import/lw/lws/scene_parameters.h"

#include "lib/toolkit/vc4_tv.h"

lw_scene_params* scn = nullptr;

int16_t lw_make_scene_params()
{
    scn = static_cast<lw_scene_params*>(Tv_Alloc_Memory(0, 0, sizeof(lw_scene_params)));
    if (!scn) return 0;
    *scn = {};
    scn->first_frame = scn->last_frame = 1;
    scn->frames_per_second = 30.0f;
    scn->custom_width = scn->custom_height = -1;
    scn->zoom_factor = 3.2f;
    lw_reset_light_params();
    scn->solid_backdrop = scn->zenith_only = -1;
    scn->backdrop_color[0] = -1.0f;
    scn->zenith_color[0] = scn->sky_color[0] = scn->ground_color[0] = scn->nadir_color[0] = -1.0f;
    return 1;
}

void lw_reset_light_params()
{
    scn->light_pending = 0;
    scn->light_color[0] = scn->light_intensity = -1.0f;
    scn->falloff = scn->cone_angle = scn->edge_angle = -1.0f;
    scn->light_type = -1;
    scn->shadow_map_size = 0;
}

void lw_drop_motion(lw_motion_block* block)
{
    block->parsed = 0;
    Tv_Free_Memory(block->keys);
    block->keys = nullptr;
}

void lw_free_scene_params()
{
    if (!scn) return;
    lw_drop_motion(&scn->object_motion);
    lw_drop_motion(&scn->light_motion);
    lw_drop_motion(&scn->camera_motion);
    Tv_Free_Memory(scn->light_name);
    Tv_Free_Memory(scn->bg_image);
    Tv_Free_Memory(scn);
    scn = nullptr;
}
