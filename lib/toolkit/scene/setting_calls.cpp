// Settings of the scene as a whole: resolution, backdrop, time line.
#include <cstring>

#include "lib/toolkit/report.h"
#include "lib/toolkit/scene/call_trace.h"
#include "lib/toolkit/scene/scene_store.h"

using namespace tv;

namespace {

void change_backdrop(Backdrop& backdrop, const WordList& list)
{
    bool* on = nullptr;
    std::optional<Vec3>* color = nullptr;
    for (Words words(list); words.next();) {
        switch (words.word()) {
        case word::color:
            backdrop.scheme = BackdropScheme::color;
            color = &backdrop.color;
            break;
        case word::gradient: backdrop.scheme = BackdropScheme::gradient; break;
        case word::surfacelink:
            backdrop.scheme = BackdropScheme::surface;
            backdrop.surface = words.text();
            break;
        case word::color1: color = &backdrop.gradient[0]; break;
        case word::color2: color = &backdrop.gradient[1]; break;
        case word::color3: color = &backdrop.gradient[2]; break;
        case word::color4: color = &backdrop.gradient[3]; break;
        case word::rgb:
            if (color) *color = words.triple();
            break;
        case word::horiztop: on = &backdrop.horizon_top; break;
        case word::horizbot: on = &backdrop.horizon_bottom; break;
        case word::horizpos: backdrop.horizon_position = words.real(); break;
        case word::on:
        case word::off:
            if (on) *on = words.word() == word::on;
            break;
        default: break;
        }
    }
}

int32_t* time_line_value(TimeLine& line, int32_t token)
{
    switch (token) {
    case word::length: return &line.length;
    case word::starttime: return &line.start;
    case word::endtime: return &line.end;
    case word::currtime: return &line.current;
    case word::framepause: return &line.frame_pause;
    case word::framestep: return &line.frame_step;
    case word::framerate: return &line.frame_rate;
    default: return nullptr;
    }
}

} // namespace

extern "C" {

void Tv_Option(int32_t first_word, ...)
{
    TV_READ_WORDS_FROM(list, Function::option, first_word)
    for (Words words(list); list.good && words.next();)
        if (words.word() == word::resolution)
            std::memcpy(store().scene.resolution.data(), words.array<int32_t>(), sizeof store().scene.resolution);
    trace_call(list);
}

void Tv_Background(int32_t first_word, ...)
{
    TV_READ_WORDS_FROM(list, Function::background, first_word)
    guarded(function_name(list.function), [&] {
        if (list.good) change_backdrop(store().scene.backdrop, list);
    });
    trace_call(list);
}

void Tv_Animation(int32_t first_word, ...)
{
    TV_READ_WORDS_FROM(list, Function::animation, first_word)
    for (Words words(list); list.good && words.next();) {
        if (int32_t* const value = time_line_value(store().scene.time_line, words.word())) *value = words.integer();
        if (words.word() == word::currtime) touch(); // extents hold at the current time
    }
    trace_call(list);
}

void Tv_Inquire_Animation(int32_t first_word, ...)
{
    TV_READ_WORDS_FROM(list, Function::inquire_animation, first_word)
    for (Words words(list); list.good && words.next();)
        if (const int32_t* const value = time_line_value(store().scene.time_line, words.word()))
            *words.out<int32_t>() = *value;
    trace_call(list);
}

} // extern "C"
