#include "lib/import/lw/lws/motion.h"

#include <algorithm>

#include "lib/import/lw/base/arrays.h"
#include "lib/import/lw/base/report.h"
#include "lib/import/lw/lws/scene_numbers.h"
#include "lib/import/lw/lws/tokenizer.h"

// A count alone buys no memory: room for this many keys at first, then twice as much each time the file has filled it.
static constexpr int32_t first_room = 64;

static bool has_room(lw_motion_block* block, int32_t used, int32_t* room)
{
    if (used < *room) return true;
    const int32_t wanted = std::min<int32_t>(block->num_keys, *room ? *room * 2 : first_room);
    if (!lw_try_grow(&block->keys, wanted, lws_no_room_for_keys)) return false;
    std::fill(block->keys + *room, block->keys + wanted, lw_motion_key{});
    *room = wanted;
    return true;
}

static bool read_vector(float v[3])
{
    return lws_get_float(&v[0]) && lws_get_float(&v[1]) && lws_get_float(&v[2]);
}

static int16_t read_motion_key(lw_motion_key* key)
{
    if (!read_vector(key->position)) return 0;
    key->position[2] = -key->position[2]; // the toolkit's Z points the other way
    return read_vector(key->rotation) && read_vector(key->scale) && lws_get_key_tail(key);
}

// From the channel count to the end behaviour. `animates_from`: the number of keys from which on the block is
// animation.
static int16_t read_block(lw_motion_block* block, int16_t (*read_key)(lw_motion_key*), int16_t animates_from)
{
    int64_t channels; // not used: the kind of block says how many values a key has
    if (!lws_get_long(&channels) || !lws_get_int16(&block->num_keys)) return 0;
    if (block->num_keys < 1) return 1;
    int32_t room = 0;
    for (int32_t i = 0; i < block->num_keys; ++i)
        if (!has_room(block, i, &room) || !read_key(&block->keys[i])) return 0;
    if (!lws_get_end_behavior(&block->keys[block->num_keys - 1])) return 0;
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
    return read_block(block, lws_get_envelope_key, 1);
}
