// The words that the toolkit's calls know, and what values each takes: the one table that the reader of word lists,
// the trace and docs/dev/words.md are made from.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "lib/toolkit/vc4_tv.h"

namespace tv {

inline constexpr int32_t first_token = 1000; // so that no token is taken for a 1 or a 0

// Every word of the table, numbered as its token.
// clang-format off
#define TV_WORDS(X)                                                                                                    \
    X(object) X(instance) X(surface) X(texture) X(light) X(camera)                                                     \
    X(enabled) X(on) X(off)                                                                                            \
    X(indexedpolygons) X(numpolygons) X(verticesperpoly) X(indiceoffset) X(clockwise) X(vertex) X(surfacelink)         \
    X(calcnormals) X(angle)                                                                                            \
    X(color) X(rgb) X(model) X(phong) X(shininess) X(metal) X(shadingcoeffs) X(ambient) X(diffuse) X(specular)         \
    X(luminous) X(reflect) X(ior) X(sphenvmap) X(reflectcoeff) X(texturelink) X(resetmatrix) X(rotate) X(yaxis)        \
    X(opacity) X(facecoeff) X(edgecoeff) X(edgeexp) X(edge) X(uscale) X(vscale) X(scale) X(translate) X(worldspace)    \
    X(modulate) X(invert) X(multiplier) X(colorblend) X(mix)                                                           \
    X(luminouscolor) X(bump) X(bumpu) X(bumpv) X(faceopacity) X(reflectopacity)                                        \
    X(image) X(textureimage) X(filter) X(mipmap) X(wrapu) X(wrapv) X(procedural) X(name)                               \
    X(color1) X(color2) X(color3) X(color4) X(param1) X(param2)                                                        \
    X(coordsystem) X(origin) X(upoint) X(vpoint) X(wpoint)                                                             \
    X(world) X(primitive) X(orthographic) X(spherical) X(cylindrical) X(box)                                           \
    X(direction) X(point) X(spot) X(intensity) X(cutoff) X(delta) X(shinedir) X(shinefrom) X(shineat)                  \
    X(shadowmap) X(shadowmapsize) X(useglobalvalues) X(decay)                                                          \
    X(active) X(focallength) X(formmappingtype) X(type4) X(lookfrom) X(lookat) X(lookup) X(projection)                 \
    X(perspective) X(window) X(resolution)                                                                             \
    X(colorscheme) X(gradient) X(horiztop) X(horizbot) X(horizpos)                                                     \
    X(length) X(starttime) X(endtime) X(currtime) X(framepause) X(framestep) X(framerate)                              \
    X(localaxes) X(eulerorder) X(replacechannels) X(eulerrotate) X(moveallchannels)                                    \
    X(parent) X(matrix) X(masterobject) X(numchildren) X(numprimitives) X(postmultiply)                                \
    X(ctrlrid) X(type) X(kftcb) X(preextraptype) X(postextraptype) X(reset) X(constant) X(cycle) X(keyframe) X(kfid)   \
    X(time) X(add) X(tcb) X(tension) X(cont) X(bias) X(easefrom) X(easeto) X(value) X(quatvalue)
// clang-format on

namespace word {
#define TV_WORD_TOKEN(w) w,
enum Token : int32_t { before_first = first_token - 1, TV_WORDS(TV_WORD_TOKEN) behind_last };
#undef TV_WORD_TOKEN
} // namespace word

inline constexpr std::size_t table_words = static_cast<std::size_t>(word::behind_last - first_token);

// The functions that take word lists.
enum class Function : uint8_t {
    object_define,
    primitive,
    object_end,
    manipulate_indexed_polygons,
    surfacelink,
    add_empty_node,
    add_instance,
    attach,
    detach,
    remove,
    instance,
    inquire_instance,
    inquire_object,
    transform,
    surface,
    inquire_surface,
    texture,
    txtr_param,
    inquire_txtr_param,
    light,
    camera,
    option,
    background,
    animation,
    inquire_animation,
    anim_controller,
    matrix_append_transform
};
inline constexpr std::size_t function_count = 27;

const char* function_name(Function function); // "Tv_Surface"

// What stands for one vararg of a word list.
enum class Value : uint8_t {
    none,
    end,   // the 0 behind the last item
    close, // the 1 behind an item of several
    word,  // a token that the table has for the function
    // By pointer, read:
    float_1,
    float_2,
    float_3,
    float_4,
    matrix, // 16 floats
    integer,
    integer_2,
    record,        // Tv_Local_Axes
    sizes,         // int32 array, an entry a polygon
    points,        // float array, three a point
    corners,       // int32 array, as many as the sizes' sum
    surface_names, // string array, an entry a polygon; may be null
    amount,        // behind a layer channel: three floats for color and diffuse, else one
    // As they are:
    by_value, // int32
    string,
    handle, // of a channel
    // One token of a set, each set a kind of value:
    switch_state, // on, off
    layer_channel,
    projection_model,
    space,
    channel_kind,
    thing_kind,
    // By address, written by the call:
    out_integer,
    out_float_3,
    out_matrix,
    out_string,
    out_record, // the address of a pointer
    out_kind,   // the token of object or instance, or 0
    out_switch_state,
    out_space,
    out_projection_model
};

struct WordRow {
    Function function;
    word::Token word;
    std::array<Value, 3> values; // behind the word, in this order; none: no further one
};

// A set's members: which tokens may stand for a value of that kind.
struct ChoiceRow {
    Value value;
    word::Token word;
};

// For tests and the page of words; exported for them.
TV_API std::span<const WordRow> word_table();
TV_API std::span<const ChoiceRow> choice_table();
TV_API const char* word_text(int32_t token); // null for what is no token
TV_API std::string words_page();             // docs/dev/words.md

// The row of a word in a function, or null. Constant time.
const WordRow* find_word(Function function, int32_t token);
bool is_choice(Value value, int32_t token);

} // namespace tv
