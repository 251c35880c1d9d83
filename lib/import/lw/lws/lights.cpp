#include "lib/import/lw/lws/lights.h"

#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lws/aim.h"
#include "lib/import/lw/lws/keywords.h"
#include "lib/import/lw/lws/scene_parameters.h"
#include "lib/import/lw/lws/tokenizer.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

enum Light_Type : int16_t { LIGHT_DISTANT = 0, LIGHT_POINT = 1, LIGHT_SPOT = 2 };

// Shadow maps up to this size keep the toolkit's own.
static constexpr int16_t default_shadow_map_size = 128;

int16_t lw_add_light()
{
    if (scn->light_pending) lw_update_light_params();
    lw_drop_motion(&scn->light_motion);
    const int16_t keyword = lw_next_keyword();
    if (keyword == KW_NONE) return 0;
    if (keyword != KW_LIGHT_NAME) return 1; // no light: what follows lands on the values of the one before
    if (!lw_get_next_token()) return 0;
    char unique_name[lw_name_size];
    Import_IO_MakeNameUnique(lw_tokens.light, token_buffer, unique_name);
    Import_IO_Copy_String(&scn->light_name, unique_name);
    if (!scn->light_name) lw_report_fatal("Out of memory while copying a light's name");
    Tv_Light(scn->light_name, lw_tokens.model, lw_tokens.direction, 0);
    lw_reset_light_params();
    return 1;
}

// What the file gave of colour and brightness.
static void send_color()
{
    if (scn->light_color[0] != -1.0f) Tv_Light(scn->light_name, lw_tokens.color, lw_tokens.rgb, scn->light_color, 0);
    if (scn->light_intensity != -1.0f) Tv_Light(scn->light_name, lw_tokens.intensity, &scn->light_intensity, 0);
}

static void send_model()
{
    const char* const name = scn->light_name;
    switch (scn->light_type) {
    case LIGHT_DISTANT: Tv_Light(name, lw_tokens.model, lw_tokens.direction, 0); break;
    case LIGHT_POINT: Tv_Light(name, lw_tokens.model, lw_tokens.point, 0); break;
    case LIGHT_SPOT:
        Tv_Light(name, lw_tokens.model, lw_tokens.spot, 0);
        if (scn->cone_angle != -1.0f) Tv_Light(name, lw_tokens.cutoff, &scn->cone_angle, 0);
        if (scn->edge_angle != -1.0f) Tv_Light(name, lw_tokens.delta, &scn->edge_angle, 0);
        break;
    default: break; // stays a distant one
    }
}

// A distant light's vector points against the way in which a spot with the same angles shines.
static void send_place(const lw_motion_key* key)
{
    const char* const name = scn->light_name;
    float m[4][4];
    switch (scn->light_type) {
    case LIGHT_DISTANT: {
        float direction[3] = {0, 0, 1};
        lw_aim_matrix(key, m);
        lw_aim_vector(m, direction);
        Tv_Light(name, lw_tokens.shinedir, direction, 0);
        break;
    }
    case LIGHT_SPOT: {
        float direction[3] = {0, 0, -1};
        lw_aim_matrix(key, m);
        lw_aim_vector(m, direction);
        float aim_point[3];
        Tv_Vector_Scale(direction, lw_aim_distance(key->position), aim_point);
        Tv_Vector_Add(key->position, aim_point, aim_point);
        Tv_Light(name, lw_tokens.shinefrom, key->position, 0);
        Tv_Light(name, lw_tokens.shineat, aim_point, 0);
        break;
    }
    default: Tv_Light(name, lw_tokens.shinefrom, key->position, 0); break;
    }
}

void lw_update_light_params()
{
    const char* const name = scn->light_name;
    const lw_motion_block* const motion = &scn->light_motion;
    if (!name || !scn->light_pending || !motion->parsed || motion->applied || !motion->num_keys) return;
    send_color();
    if (scn->light_type == -1) return;
    send_model();
    send_place(&motion->keys[0]);
    Tv_Light(name, lw_tokens.shadowmap, "default", lw_tokens.enabled, lw_tokens.off, 0);
    if (scn->shadow_map_size > default_shadow_map_size) {
        const int32_t size = scn->shadow_map_size;
        Tv_Light(name, lw_tokens.shadowmap, "default", lw_tokens.shadowmapsize, &size, lw_tokens.useglobalvalues,
                 lw_tokens.enabled, lw_tokens.off, 0);
    }
    const int32_t decay = scn->falloff > 0.0f ? 1 : 0;
    Tv_Light(name, lw_tokens.decay, &decay, 0);
    scn->light_pending = 0;
}
