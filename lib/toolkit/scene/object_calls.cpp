// Objects: their making, their polygons, their surface.
#include <cstring>
#include <string_view>
#include <unordered_map>

#include "lib/toolkit/report.h"
#include "lib/toolkit/scene/call_trace.h"
#include "lib/toolkit/scene/scene_store.h"

using namespace tv;

namespace {

// A surface number a polygon. The names come as pointers into the caller's table of surfaces, so that polygons that
// share a surface nearly always share the pointer.
void resolve_surfaces(const Object& object, const char* const* names, std::size_t count, std::vector<Id>& out)
{
    std::unordered_map<const char*, Id> known;
    const char* last = nullptr;
    Id last_id = no_id;
    out.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (const char* const name = names[i]; name != last) {
            last = name;
            const auto [at, first] = known.emplace(name, no_id);
            if (first && name) {
                at->second = scene().find(Kind::surface, name);
                if (at->second == no_id)
                    report(3, "ERR_SCENE_UNKNOWN_SURFACE", function_name(Function::primitive), {object.name, name});
            }
            last_id = at->second;
        }
        out[i] = last_id;
    }
}

template <class T>
void copy_array(std::vector<T>& out, const Words& words, std::size_t value)
{
    const T* const from = words.array<T>(value);
    if (from) out.assign(from, from + words.count(value));
}

void add_primitive(const WordList& list)
{
    const Id id = store().open_object;
    if (id == no_id) {
        report(4, "ERR_SCENE_NO_OBJECT", function_name(list.function), {});
        return;
    }
    Object& object = store().scene.objects[id];
    Primitive primitive;
    bool* target = nullptr; // of "on" and "off"
    for (Words words(list); words.next();) {
        switch (words.word()) {
        case word::verticesperpoly: copy_array(primitive.sizes, words, 0); break;
        case word::indiceoffset: primitive.index_offset = words.integer(); break;
        case word::clockwise: *(target = &primitive.clockwise) = true; break;
        case word::on:
        case word::off:
            if (target) *target = words.word() == word::on;
            break;
        case word::vertex:
            copy_array(primitive.positions, words, 1);
            copy_array(primitive.corners, words, 2);
            break;
        case word::surfacelink:
            if (words.array<const char*>())
                resolve_surfaces(object, words.array<const char*>(), words.count(), primitive.polygon_surface);
            break;
        default: break;
        }
    }
    object.primitives.push_back(std::move(primitive));
    touch();
}

} // namespace

extern "C" {

void Tv_Object_Define(const char* name, ...)
{
    TV_READ_WORDS(list, Function::object_define, name)
    guarded(function_name(list.function), [&] {
        if (!list.good || !expect_name(Kind::object, name, list.function)) return;
        make_object(name);
        store().open_object = scene().find(Kind::object, name);
    });
    trace_call(list, name);
}

void Tv_Primitive(int32_t first_word, ...)
{
    TV_READ_WORDS_FROM(list, Function::primitive, first_word)
    guarded(function_name(list.function), [&] {
        if (list.good) add_primitive(list);
    });
    trace_call(list);
}

void Tv_Object_End(int32_t first_word, ...)
{
    TV_READ_WORDS_FROM(list, Function::object_end, first_word)
    if (list.good) store().open_object = no_id;
    trace_call(list);
}

void Tv_Manipulate_IndexedPolygons(const char* name, int32_t primitive, ...)
{
    TV_READ_WORDS(list, Function::manipulate_indexed_polygons, primitive)
    if (list.good) {
        const Id id = find_or_report(Kind::object, name, list.function);
        for (Words words(list); id != no_id && words.next();)
            if (words.word() == word::angle) store().scene.objects[id].smoothing_angle = words.real();
    }
    trace_call(list, name, primitive);
}

void Tv_Surfacelink(int32_t kind, const char* name, int32_t parent_kind, const char* parent, ...)
{
    TV_READ_WORDS(list, Function::surfacelink, parent)
    if (list.good && expect_kind(list.function, kind, {word::surface}) &&
        expect_kind(list.function, parent_kind, {word::object})) {
        const Id surface = find_or_report(Kind::surface, name, list.function);
        const Id object = find_or_report(Kind::object, parent, list.function);
        if (surface != no_id && object != no_id) store().scene.objects[object].surface = surface;
    }
    trace_call(list, TokenArgument{kind}, name, TokenArgument{parent_kind}, parent);
}

void Tv_Inquire_Object(const char* name, ...)
{
    TV_READ_WORDS(list, Function::inquire_object, name)
    if (list.good) {
        const Id id = find_or_report(Kind::object, name, list.function);
        for (Words words(list); words.next();)
            if (words.word() == word::numprimitives)
                *words.out<int32_t>() = id == no_id ? 0 : static_cast<int32_t>(scene().objects[id].primitives.size());
    }
    trace_call(list, name);
}

} // extern "C"
