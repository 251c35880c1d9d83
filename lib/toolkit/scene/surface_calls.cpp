// Surfaces with their layers, and textures.
#include <cstring>

#include "lib/toolkit/report.h"
#include "lib/toolkit/scene/call_trace.h"
#include "lib/toolkit/scene/scene_store.h"

using namespace tv;

namespace {

LayerChannel channel_of(int32_t token)
{
    switch (token) {
    case word::diffuse: return LayerChannel::diffuse;
    case word::luminouscolor: return LayerChannel::luminous_color;
    case word::luminous: return LayerChannel::luminous;
    case word::bump: return LayerChannel::bump;
    case word::bumpu: return LayerChannel::bump_u;
    case word::bumpv: return LayerChannel::bump_v;
    case word::faceopacity: return LayerChannel::face_opacity;
    case word::specular: return LayerChannel::specular;
    case word::reflectopacity: return LayerChannel::reflect_opacity;
    default: return LayerChannel::color;
    }
}

// Takes a surface's words. Some mean what the words before them opened: a layer, the environment, a switch.
class SurfaceWriter {
public:
    explicit SurfaceWriter(Id surface) : id_(surface), surface_(store().scene.surfaces[surface]) {}

    void write(const Words& words)
    {
        if (!write_surface(words) && layer_) write_layer(words);
    }

private:
    bool write_surface(const Words& words)
    {
        switch (words.word()) {
        case 0: layer_ = nullptr, on_ = nullptr; return true; // an item-closing 1
        case word::rgb:
            surface_.color = words.triple();
            surface_.has_color = true;
            return true;
        case word::phong: surface_.phong = true; return true;
        case word::shininess: surface_.shininess = words.integer(); return true;
        case word::metal: surface_.metal = words.real(); return true;
        case word::ambient: surface_.ambient = words.real(); return true;
        case word::diffuse: surface_.diffuse = words.real(); return true;
        case word::specular: surface_.specular = words.real(); return true;
        case word::luminous: surface_.luminous = words.real(); return true;
        case word::reflect: surface_.reflect = words.real(); return true;
        case word::ior: surface_.ior = words.real(); return true;
        case word::facecoeff: surface_.face_opacity = words.real(); return true;
        case word::edgecoeff: surface_.edge_opacity = words.real(); return true;
        case word::edgeexp: surface_.edge_exponent = words.real(); return true;
        case word::edge: on_ = &surface_.edge_enabled; return true;
        case word::sphenvmap:
            layer_ = nullptr;
            on_ = &surface_.environment_enabled;
            return true;
        case word::reflectcoeff: surface_.environment_reflect = words.real(); return true;
        case word::yaxis: surface_.environment_yaxis = words.real(); return true;
        case word::texturelink:
            if (layer_) return false;
            surface_.environment = scene().find(Kind::texture, words.text());
            return true;
        case word::texture: open_layer(words.text()); return true;
        case word::on:
        case word::off:
            if (on_) *on_ = words.word() == word::on;
            return true;
        default: return false;
        }
    }

    void write_layer(const Words& words)
    {
        switch (words.word()) {
        case word::texturelink:
            layer_->texture_name = words.text();
            layer_->texture = scene().find(Kind::texture, words.text());
            break;
        case word::uscale: layer_->uscale = words.real(); break;
        case word::vscale: layer_->vscale = words.real(); break;
        case word::scale:
            layer_->scale = words.triple();
            layer_->placed = true;
            break;
        case word::translate:
            layer_->translate = words.triple();
            layer_->placed = true;
            break;
        case word::worldspace: on_ = &layer_->world_space; break;
        case word::modulate:
            modulation_ = &modulation(words);
            modulation_->stated = true;
            on_ = &modulation_->enabled;
            break;
        case word::invert:
            if (modulation_) on_ = &modulation_->invert;
            break;
        case word::multiplier:
            modulation(words).multiplier =
                words.kind(1) == Value::float_3 ? words.triple(1) : Vec3{words.real(1), words.real(1), words.real(1)};
            break;
        case word::colorblend: modulation(words).blend = words.real(1); break;
        case word::mix: modulation(words).mix = words.real(1); break;
        default: break;
        }
    }

    void open_layer(const char* name)
    {
        layer_ = &make_layer(id_, name);
        modulation_ = nullptr;
        on_ = &layer_->enabled;
    }

    Layer::Modulation& modulation(const Words& words)
    {
        return layer_->channels[static_cast<std::size_t>(channel_of(words.number()))];
    }

    Id id_;
    Surface& surface_;
    Layer* layer_ = nullptr; // null: the surface itself is meant
    Layer::Modulation* modulation_ = nullptr;
    bool* on_ = nullptr; // what "on" and "off" set
};

void change_texture(Texture& texture, const WordList& list)
{
    bool* on = &texture.enabled;
    Vec3* color = nullptr;
    for (Words words(list); words.next();) {
        switch (words.word()) {
        case 0: on = &texture.enabled; break;
        case word::image: texture.kind = TextureKind::image; break;
        case word::textureimage:
            texture.image_type = words.number();
            texture.file_name = words.text(1);
            break;
        case word::mipmap: texture.mipmap = true; break;
        case word::wrapu: on = &texture.wrap_u; break;
        case word::wrapv: on = &texture.wrap_v; break;
        case word::on:
        case word::off: *on = words.word() == word::on; break;
        case word::procedural: texture.kind = TextureKind::procedural; break;
        case word::name: texture.procedural = words.text(); break;
        case word::color1: color = &texture.color1; break;
        case word::color2: color = &texture.color2; break;
        case word::rgb:
            if (color) *color = words.triple();
            break;
        case word::param1: texture.param1 = words.real(); break;
        case word::param2: texture.param2 = words.real(); break;
        default: break;
        }
    }
}

} // namespace

extern "C" {

void Tv_Surface(const char* name, ...)
{
    TV_READ_WORDS(list, Function::surface, name)
    guarded(function_name(list.function), [&] {
        if (!list.good || !expect_name(Kind::surface, name, list.function)) return;
        SurfaceWriter writer(make_surface(name));
        for (Words words(list); words.next();) writer.write(words);
    });
    trace_call(list, name);
}

void Tv_Inquire_Surface(const char* name, ...)
{
    TV_READ_WORDS(list, Function::inquire_surface, name)
    if (list.good) {
        const Id id = find_or_report(Kind::surface, name, list.function);
        const Vec3 color = id == no_id ? Surface{}.color : scene().surfaces[id].color;
        for (Words words(list); words.next();)
            if (words.word() == word::color) std::memcpy(words.out<float>(), color.data(), sizeof color);
    }
    trace_call(list, name);
}

void Tv_Texture(const char* name, ...)
{
    TV_READ_WORDS(list, Function::texture, name)
    guarded(function_name(list.function), [&] {
        if (list.good && expect_name(Kind::texture, name, list.function)) change_texture(make_texture(name), list);
    });
    trace_call(list, name);
}

} // extern "C"
