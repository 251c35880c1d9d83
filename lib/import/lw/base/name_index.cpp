#include "lib/import/lw/base/name_index.h"

#include <cstring>

#include "lib/toolkit/vc4_tv.h"

// FNV-1a, with its bits stirred so that the low ones depend on all.
static uint32_t hash_name(const char* name)
{
    uint32_t hash = 2166136261u;
    for (; *name; ++name) hash = (hash ^ static_cast<unsigned char>(*name)) * 16777619u;
    return (hash ^ (hash >> 15)) * 2246822519u;
}

// The slot of the name, or the free one where it would go. There is always a free one.
static lws_name_slot* slot_of(const lws_name_index* index, const char* name, uint32_t hash)
{
    const uint32_t mask = index->capacity - 1;
    for (uint32_t i = (hash ^ (hash >> 16)) & mask;; i = (i + 1) & mask) {
        lws_name_slot* const slot = &index->slots[i];
        if (!slot->name || (slot->hash == hash && std::strcmp(slot->name, name) == 0)) return slot;
    }
}

static int16_t grow(lws_name_index* index)
{
    lws_name_index larger = {nullptr, index->capacity ? index->capacity * 2 : 64, index->used};
    larger.slots = static_cast<lws_name_slot*>(Tv_Alloc_Memory(0, 1, larger.capacity * sizeof(lws_name_slot)));
    if (!larger.slots) return 0;
    for (uint32_t i = 0; i < index->capacity; ++i) {
        const lws_name_slot* const slot = &index->slots[i];
        if (slot->name) *slot_of(&larger, slot->name, slot->hash) = *slot;
    }
    Tv_Free_Memory(index->slots);
    *index = larger;
    return 1;
}

int32_t lws_find_name(const lws_name_index* index, const char* name)
{
    if (!index->capacity) return -1;
    const lws_name_slot* const slot = slot_of(index, name, hash_name(name));
    return slot->name ? slot->number : -1;
}

int16_t lws_add_name(lws_name_index* index, const char* name, int32_t number)
{
    if (index->used >= index->capacity / 2 && !grow(index)) return 0;
    const uint32_t hash = hash_name(name);
    lws_name_slot* const slot = slot_of(index, name, hash);
    if (slot->name) return 1;
    *slot = {name, hash, number};
    ++index->used;
    return 1;
}

void lws_free_name_index(lws_name_index* index)
{
    Tv_Free_Memory(index->slots);
    *index = {};
}
