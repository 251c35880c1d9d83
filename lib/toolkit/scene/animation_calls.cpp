// Keys, one call to make a key and one to give it its value. This is the toolkit's busiest road: no map, no string and
// no memory but the key's own.
#include <algorithm>
#include <cstring>
#include <string>

#include "lib/toolkit/report.h"
#include "lib/toolkit/scene/call_trace.h"
#include "lib/toolkit/scene/channels.h"
#include "lib/toolkit/scene/scene_store.h"

using namespace tv;

namespace {

// The key of this number, or null. Numbers ascend within a channel, and the last key is nearly always meant.
Key* find_key(Channel& channel, uint32_t id)
{
    if (channel.keys.empty()) return nullptr;
    if (channel.keys.back().id == id) return &channel.keys.back();
    const auto at = std::lower_bound(channel.keys.begin(), channel.keys.end(), id,
                                     [](const Key& key, uint32_t wanted) { return key.id < wanted; });
    return at != channel.keys.end() && at->id == id ? &*at : nullptr;
}

void take_key_word(Key& key, const Words& words)
{
    switch (words.word()) {
    case word::time: key.time = words.integer(); break;
    case word::tension: key.tension = words.real(); break;
    case word::cont: key.continuity = words.real(); break;
    case word::bias: key.bias = words.real(); break;
    case word::easefrom: key.ease_from = words.real(); break;
    case word::easeto: key.ease_to = words.real(); break;
    case word::value: key.value = words.real(); break;
    case word::quatvalue: std::memcpy(key.quaternion.data(), words.array<float>(), sizeof key.quaternion); break;
    default: break;
    }
}

// What the list is about, found before anything is changed.
struct Subject {
    Channel* channel = nullptr;
    bool adds = false;
    bool names_key = false;
    uint32_t key = 0;
    int32_t* id_out = nullptr; // "keyframe"
};

Subject subject_of(const WordList& list)
{
    Subject subject;
    for (Words words(list); words.next();) {
        switch (words.word()) {
        case word::ctrlrid: subject.channel = living_channel(words.array<void>()); break;
        case word::add: subject.adds = true; break;
        case word::keyframe: subject.id_out = words.out<int32_t>(); break;
        case word::kfid:
            subject.names_key = true;
            subject.key = static_cast<uint32_t>(words.number());
            break;
        default: break;
        }
    }
    return subject;
}

void change_channel(const WordList& list)
{
    const Subject subject = subject_of(list);
    if (subject.adds && subject.id_out) *subject.id_out = 0;
    if (!subject.channel) {
        report(4, "ERR_ANIM_BAD_CHANNEL", function_name(list.function), {});
        return;
    }
    Channel& channel = *subject.channel;
    Key* key = nullptr;
    if (subject.adds) {
        key = &channel.keys.emplace_back();
        key->id = ++store().scene.keys_made;
        if (subject.id_out) *subject.id_out = static_cast<int32_t>(key->id);
    } else if (subject.names_key) {
        key = find_key(channel, subject.key);
        if (!key) {
            report(4, "ERR_ANIM_BAD_KEY", function_name(list.function), {std::to_string(subject.key)});
            return;
        }
    }
    Extrapolation* end = nullptr;
    for (Words words(list); words.next();) {
        switch (words.word()) {
        case word::preextraptype: end = &channel.before; break;
        case word::postextraptype: end = &channel.after; break;
        case word::reset:
        case word::constant:
        case word::cycle:
            if (end)
                *end = words.word() == word::reset      ? Extrapolation::reset
                       : words.word() == word::constant ? Extrapolation::constant
                                                        : Extrapolation::cycle;
            break;
        default:
            if (key) take_key_word(*key, words);
            break;
        }
    }
    channel.constant = false;
    if (channel.owner_kind != Kind::camera) touch(); // a camera's way changes no extents
}

} // namespace

extern "C" void Tv_AnimController(int32_t* scratch, ...)
{
    TV_READ_WORDS(list, Function::anim_controller, scratch)
    guarded(function_name(list.function), [&] {
        if (list.good) change_channel(list);
    });
    trace_call(list);
}
