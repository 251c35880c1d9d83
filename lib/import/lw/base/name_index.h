// Finds a name's number without a walk over all names. Holds no text: the names are the caller's, and stay where they
// are for as long as the index lives.
#pragma once
#include <cstdint>

struct lws_name_slot {
    const char* name; // null: free
    uint32_t hash;
    int32_t number;
};

struct lws_name_index {
    lws_name_slot* slots; // owned, or null
    uint32_t capacity;    // a power of two, or 0
    uint32_t used;
};

// The number that the name was added with first, or -1.
int32_t lws_find_name(const lws_name_index* index, const char* name);

// Adds a name; one that is there already keeps its number. 0 when there is no memory.
int16_t lws_add_name(lws_name_index* index, const char* name, int32_t number);

void lws_free_name_index(lws_name_index* index);
