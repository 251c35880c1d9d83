// The scene's write side: the store itself, and the making and finding of things. The calls' files include this, readers
// scene.h.
#pragma once
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "lib/toolkit/scene/scene.h"
#include "lib/toolkit/words/words.h"

namespace tv {

inline constexpr Id world = 0; // the instance "world"

// Beside the scene: what only its upkeep needs.
struct Store {
    Scene scene;
    Id open_object = no_id; // between Tv_Object_Define and Tv_Object_End

    // Instances of one object, a list through all of them; by instance, and by object.
    struct Sharers {
        Id previous = no_id, next = no_id;
    };
    std::vector<Sharers> sharers;
    std::vector<Id> first_instance; // of an object

    using LayerNumbers = std::unordered_map<std::string, Id, Scene::Hash, std::equal_to<>>;
    std::vector<LayerNumbers> layer_numbers; // of a surface: which layer has the name

    // Sets of channels by their number, which is never used again: a handle holds the number and a slot, and follows
    // its channel when the set moves to another instance. Numbers go on when the scene is cleared.
    struct ChannelSet {
        InstanceChannels* of_instance = nullptr; // both null: gone
        CameraChannels* of_camera = nullptr;
    };
    std::vector<ChannelSet> channel_sets;
    uint64_t first_channel_set = 1; // the number of channel_sets[0]

    uint64_t generation = 0; // rises when the scene is cleared
};

Store& store();

Kind kind_of(int32_t token); // none for a token of no kind
int32_t token_of(Kind kind); // 0 for none
const char* kind_name(Kind kind);

// The living thing of this name (of a surface the layer), made where there is none.
Object& make_object(const char* name);
Id make_instance(const char* name);
Id make_surface(const char* name);
Layer& make_layer(Id surface, const char* name); // good until the surface gets another one
Texture& make_texture(const char* name);
Light& make_light(const char* name);
Camera& make_camera(const char* name);

// The living thing of this name, or no_id and a report of level 4 that there is none.
Id find_or_report(Kind kind, const char* name, Function function);

// For the calls that make things: false and a report where no name was given.
bool expect_name(Kind kind, const char* name, Function function);

// Makes it dead and frees its name, no more, and takes no memory once there is room.
void make_room_to_remove(Kind kind);
void bury(Kind kind, Id id);

// What extents depend on has changed.
inline void touch()
{
    ++store().scene.revision;
}

} // namespace tv
