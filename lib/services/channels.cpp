#include "lib/toolkit/scene/channels.h"

#include <algorithm>

#include "lib/platform/memory.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/words/trace.h"

namespace {

// Slots that are handed out. The guards 6 to 8 say that the rotations of 16 to 18 are to be had.
constexpr bool is_instance_slot(std::size_t slot)
{
    return (slot >= 6 && slot <= 8) || (slot >= 10 && slot <= 18);
}

constexpr bool is_camera_slot(std::size_t slot)
{
    return slot >= 8 && slot <= 14;
}

tv::Id find(tv::Kind kind, const char* name)
{
    return name ? tv::scene().find(kind, name) : tv::no_id;
}

void trace_channels(const char* function, const char* name)
{
    tv::trace_begin(function);
    tv::trace_string(name);
}

int16_t traced_table_call(const char* function, const char* name, int16_t result)
{
    if (tv::trace_enabled()) {
        trace_channels(function, name);
        tv::trace_integer(result);
        tv::trace_end();
    }
    return result;
}

void traced_optimize_call(const char* function, const char* name)
{
    if (!tv::trace_enabled()) return;
    trace_channels(function, name);
    tv::trace_end();
}

} // namespace

int16_t Import_IO_Get_DefaultAnimationChannelPtrs(const char* instance, void** table)
{
    const tv::Id id = find(tv::Kind::instance, instance);
    if (table) {
        std::fill_n(table, tv::instance_channel_slots, nullptr);
        platform::noting_short_memory([&] {
            for (std::size_t slot = 0; id != tv::no_id && slot < tv::instance_channel_slots; ++slot)
                if (is_instance_slot(slot)) table[slot] = tv::instance_channel(id, slot);
        });
    }
    return traced_table_call("Import_IO_Get_DefaultAnimationChannelPtrs", instance, id != tv::no_id ? 1 : 0);
}

void Import_IO_OptimizeTransformationChannels(const char* instance)
{
    traced_optimize_call("Import_IO_OptimizeTransformationChannels", instance);
    if (const tv::Id id = find(tv::Kind::instance, instance); id != tv::no_id) tv::optimize_instance_channels(id);
}

int16_t Import_IO_Get_DefaultCameraAnimationChannelPtrs(const char* camera, void** table)
{
    const tv::Id id = find(tv::Kind::camera, camera);
    if (table) {
        std::fill_n(table, tv::camera_channel_slots, nullptr);
        for (std::size_t slot = 0; id != tv::no_id && slot < tv::camera_channel_slots; ++slot) {
            if (is_camera_slot(slot)) table[slot] = tv::camera_channel(id, slot);
        }
    }
    return traced_table_call("Import_IO_Get_DefaultCameraAnimationChannelPtrs", camera, id != tv::no_id ? 1 : 0);
}

void Import_IO_OptimizeCameraTransformationChannels(const char* camera)
{
    traced_optimize_call("Import_IO_OptimizeCameraTransformationChannels", camera);
    if (const tv::Id id = find(tv::Kind::camera, camera); id != tv::no_id) tv::optimize_camera_channels(id);
}
