// The options file. What was read is written and read again: the two must agree, since the file is the plug-in's own.
#include <cmath>
#include <string>
#include <tuple>

#include "fuzz/harness.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/lw2tv/options_file.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    fuzz::set_up();
    lw_init_import_variables();
    return 0;
}

static auto switches()
{
    return std::tuple(lw_compute_normals, lw_make_surfnames_unique, lw_import_keyframe0_only, lw_print_statistics_var,
                      lw_print_warnings, lw_output_debug_info, lw_explode_obj_by_surf_name);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static fuzz::InputFile given, written;
    given.hold(data, size);
    std::string path = given.path();
    if (RestoreImportConvertOptions_Lightwave(path.data()) != 0) fuzz::fail("the options file wasn't opened");

    const auto before = switches();
    const float angle = lw_smoothing_angle;
    written.hold(nullptr, 0);
    path = written.path();
    if (SaveImportConvertOptions_Lightwave(path.data()) != 0) fuzz::fail("the options weren't written");
    const std::string first = written.content();
    path = written.path();
    if (RestoreImportConvertOptions_Lightwave(path.data()) != 0) fuzz::fail("the written options weren't opened");
    if (switches() != before) fuzz::fail("a switch changed by being written and read");
    // Six digits are written.
    if (std::isfinite(angle) && !(std::fabs(lw_smoothing_angle - angle) <= std::fabs(angle) * 1e-5f)) {
        fuzz::fail("the smoothing angle changed by being written and read");
    }
    return 0;
}
