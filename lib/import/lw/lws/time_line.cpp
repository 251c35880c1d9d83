#include "lib/import/lw/lws/time_line.h"

#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/tokens.h"
#include "lib/import/lw/lws/scene_numbers.h"
#include "lib/import/lw/lws/scene_parameters.h"
#include "lib/toolkit/units.h"
#include "lib/toolkit/vc4_tv.h"

// 1/4800 s. The frame is divided first here, in double precision; keys go by lw_key_time.
static int32_t time_of_frame(int32_t frame)
{
    const double number = static_cast<double>(static_cast<float>(frame));
    return lws_truncate_to_int32(number / static_cast<double>(scn->frames_per_second) * tv::time_units_per_second);
}

void lw_update_time_line()
{
    if (lw_import_keyframe0_only || !scn->has_animation) return;
    int32_t length = 0, starttime = 0, endtime = 0, currtime = 0, framepause = 0, framestep = 0, framerate = 0;
    Tv_Inquire_Animation(lw_tokens.length, &length, 1, lw_tokens.starttime, &starttime, 1, lw_tokens.endtime, &endtime,
                         1, lw_tokens.currtime, &currtime, 1, lw_tokens.framepause, &framepause, 1, lw_tokens.framestep,
                         &framestep, 1, lw_tokens.framerate, &framerate, 1, 0);
    framerate = lws_truncate_to_int32(static_cast<double>(scn->frames_per_second));
    Tv_Animation(lw_tokens.framerate, &framerate, 0);
    const int32_t start = time_of_frame(scn->first_frame);
    if (starttime > start) {
        starttime = start;
        Tv_Animation(lw_tokens.starttime, &starttime, 0);
    }
    const int32_t end = time_of_frame(scn->last_frame);
    if (endtime < end) {
        endtime = end;
        Tv_Animation(lw_tokens.endtime, &endtime, 0);
    }
}
