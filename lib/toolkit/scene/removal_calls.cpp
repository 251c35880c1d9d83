// Things taken out of the scene.
#include "lib/toolkit/report.h"
#include "lib/toolkit/scene/call_trace.h"
#include "lib/toolkit/scene/channels.h"
#include "lib/toolkit/scene/scene_tree.h"

using namespace tv;

namespace {

// Everything of a child list goes under "world".
void hang_under_world(const ChildList& children)
{
    while (children.first != no_id) attach(children.first, Kind::instance, world, "world");
}

// Part of every scene: the instance "world", the light "defaultambient".
bool is_fixed(Kind kind, Id id)
{
    return id == 0 && (kind == Kind::instance || kind == Kind::light);
}

// Makes it dead and frees its name. What hung under it hangs under "world" then; instances of an object become empty
// nodes. Surfaces and textures that are linked to stay readable where they are.
void remove_thing(Kind kind, Id id)
{
    Store& in = store();
    make_room_to_remove(kind);
    if (kind == Kind::object) {
        Object& object = in.scene.objects[id];
        hang_under_world(object.children);
        while (in.first_instance[id] != no_id) set_object(in.first_instance[id], no_id);
        object.primitives = {};
        if (in.open_object == id) in.open_object = no_id;
    } else if (kind == Kind::instance) {
        hang_under_world(in.scene.instances[id].children);
        detach(id);
        set_object(id, no_id);
        drop_channels(id);
    } else if (kind == Kind::camera) {
        forget_camera_channels(id);
    }
    bury(kind, id);
}

} // namespace

extern "C" void Tv_Remove(int32_t kind, const char* name, ...)
{
    TV_READ_WORDS(list, Function::remove, name)
    guarded(function_name(list.function), [&] {
        if (!list.good ||
            !expect_kind(list.function, kind,
                         {word::object, word::instance, word::surface, word::texture, word::light, word::camera}))
            return;
        const Id id = find_or_report(kind_of(kind), name, list.function);
        if (id == no_id) return;
        if (is_fixed(kind_of(kind), id))
            report(4, "ERR_SCENE_FIXED", function_name(list.function), {name});
        else
            remove_thing(kind_of(kind), id);
    });
    trace_call(list, TokenArgument{kind}, name);
}
