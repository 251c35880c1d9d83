// Instances: their making, their place in the tree and in space, their texture projection.
#include <cstring>

#include "lib/toolkit/matrix.h"
#include "lib/toolkit/report.h"
#include "lib/toolkit/scene/call_trace.h"
#include "lib/toolkit/scene/channels.h"
#include "lib/toolkit/scene/scene_tree.h"

using namespace tv;

namespace {

// What an inquiry after an instance that doesn't exist hands out: callers follow the pointer.
Tv_Local_Axes* axes_of_none()
{
    static Tv_Local_Axes axes;
    axes = {};
    Tv_Matrix_Identity(axes.axes_matrix);
    axes.axes_scale = 1;
    return &axes;
}

void change_instance(Id id, const WordList& list)
{
    for (Words words(list); words.next();) {
        Instance& instance = store().scene.instances[id];
        switch (words.word()) {
        case word::localaxes:
            if (words.array<Tv_Local_Axes>() != &instance.axes) instance.axes = *words.array<Tv_Local_Axes>();
            break;
        case word::eulerorder: make_channels(id).euler_order = words.integer(); break;
        case word::resetmatrix: instance.matrix = identity_matrix; break;
        case word::replacechannels: make_channels(id); break;
        case word::moveallchannels: {
            const Id to = find_or_report(Kind::instance, words.text(1), list.function);
            if (to != no_id) move_channels(id, to);
            break;
        }
        default: break;
        }
    }
    touch();
}

void inquire_instance(const Instance* instance, Tv_Local_Axes* axes, const WordList& list)
{
    for (Words words(list); words.next();) {
        switch (words.word()) {
        case word::localaxes: *words.out<Tv_Local_Axes*>() = axes; break;
        case word::parent:
            *words.out<int32_t>() = instance ? token_of(instance->parent_kind) : 0;
            *words.out<const char*>(1) = !instance || instance->parent_kind == Kind::none ? nullptr
                                         : instance->parent_kind == Kind::object
                                             ? scene().objects[instance->parent].name.c_str()
                                             : scene().instances[instance->parent].name.c_str();
            break;
        case word::matrix:
            std::memcpy(words.out<float>(), (instance ? instance->matrix : identity_matrix).data(), sizeof(Matrix));
            break;
        case word::masterobject:
            *words.out<const char*>() =
                instance && instance->object != no_id ? scene().objects[instance->object].name.c_str() : nullptr;
            break;
        case word::numchildren:
            *words.out<int32_t>() = instance ? static_cast<int32_t>(instance->children.count) : 0;
            break;
        default: break;
        }
    }
}

ProjectionModel model_of(int32_t token)
{
    switch (token) {
    case word::spherical: return ProjectionModel::spherical;
    case word::cylindrical: return ProjectionModel::cylindrical;
    case word::box: return ProjectionModel::box;
    default: return ProjectionModel::orthographic;
    }
}

int32_t token_of(ProjectionModel model)
{
    switch (model) {
    case ProjectionModel::spherical: return word::spherical;
    case ProjectionModel::cylindrical: return word::cylindrical;
    case ProjectionModel::box: return word::box;
    case ProjectionModel::orthographic: break;
    }
    return word::orthographic;
}

Vec3* point_of(TextureProjection& projection, int32_t token)
{
    switch (token) {
    case word::origin: return &projection.origin;
    case word::upoint: return &projection.upoint;
    case word::vpoint: return &projection.vpoint;
    case word::wpoint: return &projection.wpoint;
    default: return nullptr;
    }
}

void change_projection(TextureProjection& projection, const WordList& list)
{
    for (Words words(list); words.next();) {
        if (Vec3* const point = point_of(projection, words.word())) *point = words.triple();
        if (words.word() == word::enabled) projection.enabled = words.number() == word::on;
        if (words.word() == word::coordsystem) projection.world_space = words.number() == word::world;
        if (words.word() == word::model) projection.model = model_of(words.number());
    }
}

void inquire_projection(TextureProjection projection, const WordList& list)
{
    for (Words words(list); words.next();) {
        if (const Vec3* const point = point_of(projection, words.word()))
            std::memcpy(words.out<float>(), point->data(), sizeof *point);
        if (words.word() == word::enabled) *words.out<int32_t>() = projection.enabled ? word::on : word::off;
        if (words.word() == word::coordsystem)
            *words.out<int32_t>() = projection.world_space ? word::world : word::primitive;
        if (words.word() == word::model) *words.out<int32_t>() = token_of(projection.model);
    }
}

} // namespace

extern "C" {

void Tv_Add_Empty_Node(int32_t kind, const char* name, ...)
{
    TV_READ_WORDS(list, Function::add_empty_node, name)
    guarded(function_name(list.function), [&] {
        if (!list.good || !expect_kind(list.function, kind, {word::object, word::instance}) ||
            !expect_name(kind_of(kind), name, list.function))
            return;
        if (kind == word::object)
            make_object(name);
        else
            make_instance(name);
    });
    trace_call(list, TokenArgument{kind}, name);
}

void Tv_Add_Instance(int32_t kind, const char* name, int32_t object_kind, const char* object, ...)
{
    TV_READ_WORDS(list, Function::add_instance, object)
    guarded(function_name(list.function), [&] {
        if (!list.good || !expect_kind(list.function, kind, {word::instance}) ||
            !expect_kind(list.function, object_kind, {word::object}) ||
            !expect_name(Kind::instance, name, list.function))
            return;
        const Id id = make_instance(name);
        const Id shape = find_or_report(Kind::object, object, list.function);
        if (shape == no_id || shape == scene().instances[id].object) return;
        if (object_would_close_cycle(id, shape))
            report(4, "ERR_SCENE_BAD_PARENT", function_name(list.function), {name, object});
        else
            set_object(id, shape);
    });
    trace_call(list, TokenArgument{kind}, name, TokenArgument{object_kind}, object);
}

void Tv_Attach(int32_t kind, const char* name, int32_t parent_kind, const char* parent, ...)
{
    TV_READ_WORDS(list, Function::attach, parent)
    guarded(function_name(list.function), [&] {
        if (!list.good || !expect_kind(list.function, kind, {word::instance})) return;
        const Id id = find_or_report(Kind::instance, name, list.function);
        if (id == no_id) return;
        const Kind under = kind_of(parent_kind);
        const bool can_hold = parent && (under == Kind::instance || under == Kind::object);
        attach(id, under, can_hold ? scene().find(under, parent) : no_id, parent);
    });
    trace_call(list, TokenArgument{kind}, name, TokenArgument{parent_kind}, parent);
}

void Tv_Detach(int32_t kind, const char* name, ...)
{
    TV_READ_WORDS(list, Function::detach, name)
    if (list.good && expect_kind(list.function, kind, {word::instance})) {
        const Id id = find_or_report(Kind::instance, name, list.function);
        if (id != no_id) detach(id);
    }
    trace_call(list, TokenArgument{kind}, name);
}

void Tv_Instance(const char* name, ...)
{
    TV_READ_WORDS(list, Function::instance, name)
    guarded(function_name(list.function), [&] {
        const Id id = list.good ? find_or_report(Kind::instance, name, list.function) : no_id;
        if (id != no_id) change_instance(id, list);
    });
    trace_call(list, name);
}

void Tv_Inquire_Instance(const char* name, ...)
{
    TV_READ_WORDS(list, Function::inquire_instance, name)
    if (list.good) {
        const Id id = find_or_report(Kind::instance, name, list.function);
        Instance* const instance = id == no_id ? nullptr : &store().scene.instances[id];
        inquire_instance(instance, instance ? &instance->axes : axes_of_none(), list);
    }
    trace_call(list, name);
}

void Tv_Transform(int32_t kind, const char* name, ...)
{
    TV_READ_WORDS(list, Function::transform, name)
    if (list.good && expect_kind(list.function, kind, {word::instance})) {
        const Id id = find_or_report(Kind::instance, name, list.function);
        for (Words words(list); id != no_id && words.next();) {
            if (words.word() != word::matrix) continue;
            Matrix& matrix = store().scene.instances[id].matrix;
            multiply(matrix.data(), words.array<float>(), matrix.data());
            touch();
        }
    }
    trace_call(list, TokenArgument{kind}, name);
}

void Tv_TxtrParam(int32_t kind, const char* name, ...)
{
    TV_READ_WORDS(list, Function::txtr_param, name)
    if (list.good && expect_kind(list.function, kind, {word::instance})) {
        const Id id = find_or_report(Kind::instance, name, list.function);
        if (id != no_id) change_projection(store().scene.instances[id].projection, list);
    }
    trace_call(list, TokenArgument{kind}, name);
}

void Tv_Inquire_TxtrParam(int32_t kind, const char* name, ...)
{
    TV_READ_WORDS(list, Function::inquire_txtr_param, name)
    if (list.good) {
        const bool known = expect_kind(list.function, kind, {word::instance});
        const Id id = known ? find_or_report(Kind::instance, name, list.function) : no_id;
        inquire_projection(id == no_id ? TextureProjection{} : scene().instances[id].projection, list);
    }
    trace_call(list, TokenArgument{kind}, name);
}

} // extern "C"
