#include "lib/import/lw/lws/motion.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "lib/import/lw/lws/keywords.h"
#include "lib/import/lw/lws/scene_numbers.h"
#include "lib/import/lw/lws/tokenizer.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

// A count alone buys no memory: room for this many keys at first, then twice as much each time the file has filled it.
static constexpr int32_t first_room = 64;

static bool has_room(lw_motion_block* block, int32_t used, int32_t* room)
{
    if (used < *room) return true;
    const int32_t wanted = std::min<int32_t>(block->num_keys, *room ? *room * 2 : first_room);
    const std::size_t bytes = static_cast<std::size_t>(wanted) * sizeof(lw_motion_key);
    void* const keys = block->keys ? Tv_Realloc_Memory(0, block->keys, bytes) : Tv_Alloc_Memory(0, 1, bytes);
    if (!keys) {
        Import_IO_Report_Error(4, "Out of memory while allocating space for keyframe data list.");
        return false;
    }
    block->keys = static_cast<lw_motion_key*>(keys);
    std::memset(static_cast<void*>(block->keys + *room), 0,
                static_cast<std::size_t>(wanted - *room) * sizeof(lw_motion_key));
    *room = wanted;
    return true;
}

static bool read_vector(float v[3])
{
    return lws_get_float(&v[0]) && lws_get_float(&v[1]) && lws_get_float(&v[2]);
}

// The places that both kinds of key end with.
static bool read_key_tail(lw_motion_key* key)
{
    return lws_get_int16(&key->frame) && lws_get_int16(&key->linear) && lws_get_float(&key->tension) &&
           lws_get_float(&key->continuity) && lws_get_float(&key->bias);
}

static bool read_motion_key(lw_motion_key* key)
{
    if (!read_vector(key->position)) return false;
    key->position[2] = -key->position[2]; // the toolkit's Z points the other way
    return read_vector(key->rotation) && read_vector(key->scale) && read_key_tail(key);
}

static bool read_envelope_key(lw_motion_key* key)
{
    return lws_get_float(&key->position[0]) && read_key_tail(key);
}

// From the channel count to the end behaviour. `animates_from`: the number of keys from which on the block is animation.
static int16_t read_block(lw_motion_block* block, bool (*read_key)(lw_motion_key*), int16_t animates_from)
{
    int64_t channels; // not used: the kind of block says how many values a key has
    if (!lws_get_long(&channels) || !lws_get_int16(&block->num_keys)) return 0;
    if (block->num_keys < 1) return 1;
    int32_t room = 0;
    for (int32_t i = 0; i < block->num_keys; ++i)
        if (!has_room(block, i, &room) || !read_key(&block->keys[i])) return 0;

    const int16_t keyword = lw_next_keyword();
    if (keyword == KW_NONE) return 0;
    if (keyword == KW_END_BEHAVIOR) {
        if (!lws_get_int16(&block->keys[block->num_keys - 1].end_behavior)) return 0;
    } else {
        lw_syntax_err("Expecting token 'EndBehavior' after motion curve data");
    }
    if (block->num_keys >= animates_from) scn->has_animation = 1;
    block->parsed = 1;
    return 1;
}

int16_t lw_parse_motion_data(lw_motion_block* block)
{
    lw_drop_motion(block);
    block->applied = 0;
    if (!lw_get_next_token()) return 0; // the motion's name
    return read_block(block, read_motion_key, 2);
}

int16_t lw_parse_envelope_data(lw_motion_block* block)
{
    lw_drop_motion(block);
    block->applied = 0;
    return read_block(block, read_envelope_key, 1);
}
