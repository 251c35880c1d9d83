#include "lib/import/lw/base/run_state.h"

std::FILE* lw_infile = nullptr;
std::FILE* lws_infile = nullptr;
std::FILE* lw_debug_fp = nullptr;

int32_t num_surfaces_read = 0;
int32_t num_vertices_read = 0;
int32_t num_v_indices_read = 0;
int32_t num_polygons_read = 0;
int32_t lw_object_count = 0;

void lw_close_stream(std::FILE** stream)
{
    if (*stream) std::fclose(*stream);
    *stream = nullptr;
}
