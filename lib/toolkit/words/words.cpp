#include "lib/toolkit/words/words.h"

#include <deque>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tv {

namespace {

constexpr Value f1 = Value::float_1, f2 = Value::float_2, f3 = Value::float_3, f4 = Value::float_4, f16 = Value::matrix,
                i1 = Value::integer, i2 = Value::integer_2, text = Value::string, by_value = Value::by_value,
                channel = Value::layer_channel, amount = Value::amount;

using F = Function;

constexpr WordRow rows[] = {
    // Tv_Primitive
    {F::primitive, word::indexedpolygons, {}},
    {F::primitive, word::numpolygons, {i1}},
    {F::primitive, word::verticesperpoly, {Value::sizes}},
    {F::primitive, word::indiceoffset, {i1}},
    {F::primitive, word::clockwise, {}},
    {F::primitive, word::enabled, {}},
    {F::primitive, word::on, {}},
    {F::primitive, word::off, {}},
    {F::primitive, word::vertex, {i1, Value::points, Value::corners}},
    {F::primitive, word::surfacelink, {Value::surface_names}},
    // Tv_Manipulate_IndexedPolygons
    {F::manipulate_indexed_polygons, word::calcnormals, {}},
    {F::manipulate_indexed_polygons, word::angle, {f1}},
    // Tv_Instance and its inquiries
    {F::instance, word::localaxes, {Value::record}},
    {F::instance, word::eulerorder, {i1}},
    {F::instance, word::resetmatrix, {}},
    {F::instance, word::replacechannels, {Value::channel_kind}},
    {F::instance, word::moveallchannels, {Value::thing_kind, text}},
    {F::inquire_instance, word::localaxes, {Value::out_record}},
    {F::inquire_instance, word::parent, {Value::out_kind, Value::out_string}},
    {F::inquire_instance, word::matrix, {Value::out_matrix}},
    {F::inquire_instance, word::masterobject, {Value::out_string}},
    {F::inquire_instance, word::numchildren, {Value::out_integer}},
    {F::inquire_object, word::numprimitives, {Value::out_integer}},
    {F::transform, word::postmultiply, {}},
    {F::transform, word::matrix, {f16}},
    // Tv_Surface
    {F::surface, word::color, {}},
    {F::surface, word::rgb, {f3}},
    {F::surface, word::model, {}},
    {F::surface, word::phong, {}},
    {F::surface, word::shininess, {i1}},
    {F::surface, word::metal, {f1}},
    {F::surface, word::shadingcoeffs, {}},
    {F::surface, word::ambient, {f1}},
    {F::surface, word::diffuse, {f1}},
    {F::surface, word::specular, {f1}},
    {F::surface, word::luminous, {f1}},
    {F::surface, word::reflect, {f1}},
    {F::surface, word::ior, {f1}},
    {F::surface, word::sphenvmap, {}},
    {F::surface, word::enabled, {}},
    {F::surface, word::on, {}},
    {F::surface, word::off, {}},
    {F::surface, word::reflectcoeff, {f1}},
    {F::surface, word::texturelink, {text}},
    {F::surface, word::resetmatrix, {}},
    {F::surface, word::rotate, {}},
    {F::surface, word::yaxis, {f1}},
    {F::surface, word::opacity, {}},
    {F::surface, word::facecoeff, {f1}},
    {F::surface, word::edgecoeff, {f1}},
    {F::surface, word::edgeexp, {f1}},
    {F::surface, word::edge, {}},
    {F::surface, word::texture, {text}},
    {F::surface, word::uscale, {f1}},
    {F::surface, word::vscale, {f1}},
    {F::surface, word::scale, {f3}},
    {F::surface, word::translate, {f3}},
    {F::surface, word::worldspace, {}},
    {F::surface, word::modulate, {channel}},
    {F::surface, word::invert, {}},
    {F::surface, word::multiplier, {channel, amount}},
    {F::surface, word::colorblend, {channel, f1}},
    {F::surface, word::mix, {channel, f1}},
    {F::inquire_surface, word::color, {Value::out_float_3}},
    // Tv_Texture
    {F::texture, word::image, {}},
    {F::texture, word::textureimage, {by_value, text}},
    {F::texture, word::filter, {}},
    {F::texture, word::mipmap, {}},
    {F::texture, word::wrapu, {}},
    {F::texture, word::wrapv, {}},
    {F::texture, word::enabled, {}},
    {F::texture, word::on, {}},
    {F::texture, word::off, {}},
    {F::texture, word::procedural, {}},
    {F::texture, word::name, {text}},
    {F::texture, word::color1, {}},
    {F::texture, word::color2, {}},
    {F::texture, word::rgb, {f3}},
    {F::texture, word::param1, {f1}},
    {F::texture, word::param2, {f1}},
    // Tv_TxtrParam and its inquiry
    {F::txtr_param, word::enabled, {Value::switch_state}},
    {F::txtr_param, word::coordsystem, {Value::space}},
    {F::txtr_param, word::origin, {f3}},
    {F::txtr_param, word::upoint, {f3}},
    {F::txtr_param, word::vpoint, {f3}},
    {F::txtr_param, word::wpoint, {f3}},
    {F::txtr_param, word::model, {Value::projection_model}},
    {F::inquire_txtr_param, word::enabled, {Value::out_switch_state}},
    {F::inquire_txtr_param, word::coordsystem, {Value::out_space}},
    {F::inquire_txtr_param, word::origin, {Value::out_float_3}},
    {F::inquire_txtr_param, word::upoint, {Value::out_float_3}},
    {F::inquire_txtr_param, word::vpoint, {Value::out_float_3}},
    {F::inquire_txtr_param, word::wpoint, {Value::out_float_3}},
    {F::inquire_txtr_param, word::model, {Value::out_projection_model}},
    // Tv_Light
    {F::light, word::color, {}},
    {F::light, word::rgb, {f3}},
    {F::light, word::intensity, {f1}},
    {F::light, word::model, {}},
    {F::light, word::direction, {}},
    {F::light, word::point, {}},
    {F::light, word::spot, {}},
    {F::light, word::ambient, {}},
    {F::light, word::cutoff, {f1}},
    {F::light, word::delta, {f1}},
    {F::light, word::shinedir, {f3}},
    {F::light, word::shinefrom, {f3}},
    {F::light, word::shineat, {f3}},
    {F::light, word::shadowmap, {text}},
    {F::light, word::shadowmapsize, {i1}},
    {F::light, word::useglobalvalues, {}},
    {F::light, word::enabled, {}},
    {F::light, word::on, {}},
    {F::light, word::off, {}},
    {F::light, word::decay, {i1}},
    // Tv_Camera
    {F::camera, word::active, {}},
    {F::camera, word::focallength, {f1}},
    {F::camera, word::formmappingtype, {}},
    {F::camera, word::type4, {}},
    {F::camera, word::lookfrom, {f3}},
    {F::camera, word::lookat, {f3}},
    {F::camera, word::lookup, {f3}},
    {F::camera, word::projection, {}},
    {F::camera, word::perspective, {}},
    {F::camera, word::orthographic, {}},
    {F::camera, word::window, {f2}},
    // Tv_Option, Tv_Background, Tv_Animation
    {F::option, word::resolution, {i2}},
    {F::background, word::colorscheme, {}},
    {F::background, word::color, {}},
    {F::background, word::gradient, {}},
    {F::background, word::surfacelink, {text}},
    {F::background, word::rgb, {f3}},
    {F::background, word::color1, {}},
    {F::background, word::color2, {}},
    {F::background, word::color3, {}},
    {F::background, word::color4, {}},
    {F::background, word::horiztop, {}},
    {F::background, word::horizbot, {}},
    {F::background, word::horizpos, {f1}},
    {F::background, word::enabled, {}},
    {F::background, word::on, {}},
    {F::background, word::off, {}},
    {F::animation, word::length, {i1}},
    {F::animation, word::starttime, {i1}},
    {F::animation, word::endtime, {i1}},
    {F::animation, word::currtime, {i1}},
    {F::animation, word::framepause, {i1}},
    {F::animation, word::framestep, {i1}},
    {F::animation, word::framerate, {i1}},
    {F::inquire_animation, word::length, {Value::out_integer}},
    {F::inquire_animation, word::starttime, {Value::out_integer}},
    {F::inquire_animation, word::endtime, {Value::out_integer}},
    {F::inquire_animation, word::currtime, {Value::out_integer}},
    {F::inquire_animation, word::framepause, {Value::out_integer}},
    {F::inquire_animation, word::framestep, {Value::out_integer}},
    {F::inquire_animation, word::framerate, {Value::out_integer}},
    // Tv_AnimController. The keyframe's id is written where "add" stands, else read.
    {F::anim_controller, word::ctrlrid, {Value::handle}},
    {F::anim_controller, word::type, {}},
    {F::anim_controller, word::kftcb, {}},
    {F::anim_controller, word::preextraptype, {}},
    {F::anim_controller, word::postextraptype, {}},
    {F::anim_controller, word::reset, {}},
    {F::anim_controller, word::constant, {}},
    {F::anim_controller, word::cycle, {}},
    {F::anim_controller, word::keyframe, {i1}},
    {F::anim_controller, word::kfid, {by_value}},
    {F::anim_controller, word::time, {i1}},
    {F::anim_controller, word::add, {}},
    {F::anim_controller, word::tcb, {}},
    {F::anim_controller, word::tension, {f1}},
    {F::anim_controller, word::cont, {f1}},
    {F::anim_controller, word::bias, {f1}},
    {F::anim_controller, word::easefrom, {f1}},
    {F::anim_controller, word::easeto, {f1}},
    {F::anim_controller, word::value, {f1}},
    {F::anim_controller, word::quatvalue, {f4}},
    // Tv_Matrix_Append_Transform
    {F::matrix_append_transform, word::postmultiply, {}},
    {F::matrix_append_transform, word::translate, {f3}},
};

constexpr ChoiceRow choices[] = {
    {Value::switch_state, word::on},
    {Value::switch_state, word::off},
    {Value::layer_channel, word::color},
    {Value::layer_channel, word::diffuse},
    {Value::layer_channel, word::luminouscolor},
    {Value::layer_channel, word::luminous},
    {Value::layer_channel, word::bump},
    {Value::layer_channel, word::bumpu},
    {Value::layer_channel, word::bumpv},
    {Value::layer_channel, word::faceopacity},
    {Value::layer_channel, word::specular},
    {Value::layer_channel, word::reflectopacity},
    {Value::projection_model, word::orthographic},
    {Value::projection_model, word::spherical},
    {Value::projection_model, word::cylindrical},
    {Value::projection_model, word::box},
    {Value::space, word::primitive},
    {Value::space, word::world},
    {Value::channel_kind, word::eulerrotate},
    {Value::thing_kind, word::instance},
};

constexpr const char* function_names[function_count] = {
    "Tv_Object_Define",
    "Tv_Primitive",
    "Tv_Object_End",
    "Tv_Manipulate_IndexedPolygons",
    "Tv_Surfacelink",
    "Tv_Add_Empty_Node",
    "Tv_Add_Instance",
    "Tv_Attach",
    "Tv_Detach",
    "Tv_Remove",
    "Tv_Instance",
    "Tv_Inquire_Instance",
    "Tv_Inquire_Object",
    "Tv_Transform",
    "Tv_Surface",
    "Tv_Inquire_Surface",
    "Tv_Texture",
    "Tv_TxtrParam",
    "Tv_Inquire_TxtrParam",
    "Tv_Light",
    "Tv_Camera",
    "Tv_Option",
    "Tv_Background",
    "Tv_Animation",
    "Tv_Inquire_Animation",
    "Tv_AnimController",
    "Tv_Matrix_Append_Transform",
};

// Rows by function and token, so that a look-up is one index: 0 for a word that the function doesn't know, else the
// row's number from 1. Choices: a bit a kind of value.
struct Index {
    std::array<std::array<uint8_t, table_words>, function_count> row{};
    std::array<uint64_t, table_words> choice{};
};
static_assert(std::size(rows) < 256, "the index holds bytes");

constexpr std::size_t slot(int32_t token)
{
    return static_cast<std::size_t>(token - first_token);
}

constexpr Index index_of_table()
{
    Index index;
    for (std::size_t i = 0; i < std::size(rows); ++i)
        index.row[static_cast<std::size_t>(rows[i].function)][slot(rows[i].word)] = static_cast<uint8_t>(i + 1);
    for (const ChoiceRow& row : choices)
        index.choice[slot(row.word)] |= uint64_t{1} << static_cast<unsigned>(row.value);
    return index;
}

constexpr Index table_index = index_of_table();

// All words that have been asked for: those of the table first, so that their tokens are known beforehand.
struct Tokens {
    std::deque<std::string> texts; // by token; a deque, so that the views of the map stay good
    std::unordered_map<std::string_view, int32_t> tokens;

    Tokens()
    {
#define TV_WORD_ADD(w) add(#w);
        TV_WORDS(TV_WORD_ADD)
#undef TV_WORD_ADD
    }
    int32_t add(std::string_view word)
    {
        const int32_t token = first_token + static_cast<int32_t>(texts.size());
        tokens.emplace(texts.emplace_back(word), token);
        return token;
    }
};

Tokens& all_tokens()
{
    static Tokens tokens;
    return tokens;
}

const char* value_name(Value value)
{
    switch (value) {
    case Value::float_1: return "float";
    case Value::float_2: return "two floats";
    case Value::float_3: return "three floats";
    case Value::float_4: return "four floats";
    case Value::matrix: return "matrix of 16 floats";
    case Value::integer: return "int32";
    case Value::integer_2: return "two int32";
    case Value::record: return "local axes record";
    case Value::sizes: return "int32 array, one a polygon";
    case Value::points: return "float array, three a point";
    case Value::corners: return "int32 array, one a corner";
    case Value::surface_names: return "string array, one a polygon, or null";
    case Value::amount: return "three floats for color and diffuse, else a float";
    case Value::by_value: return "int32 by value";
    case Value::string: return "string";
    case Value::handle: return "channel handle";
    case Value::switch_state: return "token: switch";
    case Value::layer_channel: return "token: layer channel";
    case Value::projection_model: return "token: projection model";
    case Value::space: return "token: space";
    case Value::channel_kind: return "token: channel kind";
    case Value::thing_kind: return "token: kind of thing";
    case Value::out_integer: return "address of an int32";
    case Value::out_float_3: return "address of three floats";
    case Value::out_matrix: return "address of a matrix";
    case Value::out_string: return "address of a string pointer";
    case Value::out_record: return "address of a record pointer";
    case Value::out_kind: return "address of a token: object or instance; 0 for none";
    case Value::out_switch_state: return "address of a token: switch";
    case Value::out_space: return "address of a token: space";
    case Value::out_projection_model: return "address of a token: projection model";
    case Value::none:
    case Value::end:
    case Value::close:
    case Value::word: break;
    }
    return "";
}

} // namespace

const char* function_name(Function function)
{
    return function_names[static_cast<std::size_t>(function)];
}

std::span<const WordRow> word_table()
{
    return rows;
}

std::span<const ChoiceRow> choice_table()
{
    return choices;
}

const char* word_text(int32_t token)
{
    if (token < first_token) return nullptr;
    const std::deque<std::string>& texts = all_tokens().texts;
    return slot(token) < texts.size() ? texts[slot(token)].c_str() : nullptr;
}

const WordRow* find_word(Function function, int32_t token)
{
    if (token < first_token || token >= word::behind_last) return nullptr;
    const uint8_t row = table_index.row[static_cast<std::size_t>(function)][slot(token)];
    return row ? &rows[row - 1] : nullptr;
}

bool is_choice(Value value, int32_t token)
{
    if (token < first_token || token >= word::behind_last) return false;
    return (table_index.choice[slot(token)] >> static_cast<unsigned>(value) & 1) != 0;
}

std::string words_page()
{
    std::string page =
        "# Words of the scene toolkit\n\n"
        "Made from the table in `lib/toolkit/words/words.cpp` by `words_page`; a test fails when they part.\n"
        "A value goes by pointer unless it says otherwise. A word without a value stands alone.\n";
    for (std::size_t i = 0; i < function_count; ++i) {
        const auto function = static_cast<Function>(i);
        page += std::string("\n## `") + function_name(function) + "`\n\n";
        bool any = false;
        for (const WordRow& row : rows) {
            if (row.function != function) continue;
            if (!any) page += "| Word | Values |\n|---|---|\n";
            any = true;
            page += std::string("| ") + word_text(row.word) + " | ";
            for (std::size_t v = 0; v < row.values.size() && row.values[v] != Value::none; ++v)
                page += (v ? "; " : "") + std::string(value_name(row.values[v]));
            page += " |\n";
        }
        if (!any) page += "No words: the list is its end.\n";
    }
    page += "\n## Tokens as values\n\n| Set | Members |\n|---|---|\n";
    Value set = Value::none;
    for (const ChoiceRow& row : choices) {
        if (row.value != set) {
            if (set != Value::none) page += " |\n";
            page += std::string("| ") + (value_name(row.value) + std::string_view("token: ").size()) + " | ";
        } else {
            page += ", ";
        }
        page += word_text(row.word);
        set = row.value;
    }
    return page + " |\n";
}

} // namespace tv

extern "C" int32_t Tv_Inquire_Token(const char* word)
{
    if (!word) return 0;
    tv::Tokens& tokens = tv::all_tokens();
    const auto found = tokens.tokens.find(word);
    return found != tokens.tokens.end() ? found->second : tokens.add(word);
}
