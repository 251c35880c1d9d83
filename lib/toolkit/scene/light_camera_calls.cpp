// Lights and cameras.
#include <cstring>

#include "lib/toolkit/report.h"
#include "lib/toolkit/scene/call_trace.h"
#include "lib/toolkit/scene/channels.h"
#include "lib/toolkit/scene/scene_store.h"

using namespace tv;

namespace {

void change_light(Light& light, const WordList& list)
{
    enum class Switch : uint8_t { none, shadow_map, global_size } target = Switch::none;
    for (Words words(list); words.next();) {
        switch (words.word()) {
        case word::rgb: light.color = words.triple(); break;
        case word::intensity: light.intensity = words.real(); break;
        case word::direction: light.model = LightModel::direction; break;
        case word::point: light.model = LightModel::point; break;
        case word::spot: light.model = LightModel::spot; break;
        case word::ambient: light.model = LightModel::ambient; break;
        case word::cutoff: light.cutoff = words.real(); break;
        case word::delta: light.delta = words.real(); break;
        case word::shinedir: light.shine_direction = words.triple(); break;
        case word::shinefrom: light.shine_from = words.triple(); break;
        case word::shineat: light.shine_at = words.triple(); break;
        case word::shadowmap: target = Switch::shadow_map; break;
        case word::shadowmapsize: light.shadow_map_size = words.integer(); break;
        case word::useglobalvalues: target = Switch::global_size; break;
        case word::on:
            if (target == Switch::shadow_map) light.shadow_map = true;
            if (target == Switch::global_size) light.shadow_map_size = 0;
            break;
        case word::off:
            if (target == Switch::shadow_map) light.shadow_map = false;
            break;
        case word::decay: light.decay = words.integer() != 0; break;
        default: break;
        }
    }
}

void change_camera(Camera& camera, const WordList& list)
{
    for (Words words(list); words.next();) {
        switch (words.word()) {
        case word::active:
            for (Camera& other : store().scene.cameras) other.active = &other == &camera;
            break;
        case word::focallength: camera.focal_length = words.real(); break;
        case word::lookfrom: camera.look_from = words.triple(); break;
        case word::lookat: camera.look_at = words.triple(); break;
        case word::lookup: camera.look_up = words.triple(); break;
        case word::perspective: camera.perspective = true; break;
        case word::orthographic: camera.perspective = false; break;
        case word::window: std::memcpy(camera.window.data(), words.array<float>(), sizeof camera.window); break;
        default: break;
        }
    }
}

} // namespace

extern "C" {

void Tv_Light(const char* name, ...)
{
    TV_READ_WORDS(list, Function::light, name)
    guarded(function_name(list.function), [&] {
        if (list.good && expect_name(Kind::light, name, list.function)) change_light(make_light(name), list);
    });
    trace_call(list, name);
}

void Tv_Camera(const char* name, ...)
{
    TV_READ_WORDS(list, Function::camera, name)
    guarded(function_name(list.function), [&] {
        if (!list.good || !expect_name(Kind::camera, name, list.function)) return;
        const std::size_t before = scene().cameras.size();
        Camera& camera = make_camera(name);
        if (scene().cameras.size() != before) register_camera_channels(static_cast<Id>(before));
        change_camera(camera, list);
    });
    trace_call(list, name);
}

} // extern "C"
