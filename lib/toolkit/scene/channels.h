// Channels by the slot numbers of the services' channel tables, and their handles as plug-ins hold them.
#pragma once
#include <cstddef>
#include <cstdint>

#include "lib/toolkit/scene/scene.h"

namespace tv {

inline constexpr std::size_t instance_channel_slots = 20; // entries of an instance's table
inline constexpr std::size_t camera_channel_slots = 16;   // entries of a camera's table

// The handle, as Tv_AnimController takes it, of the channel at a slot; an instance's channels are made where they don't
// stand yet, and without keys animate nothing. Null for a thing that doesn't live and for a slot that has no channel: 6
// to 8 and 10 to 18 for an instance, 8 to 14 for a camera. A handle is a number in a pointer's clothes and points
// nowhere; it stays good until the thing that has the channel is removed.
TV_API void* instance_channel(Id instance, std::size_t slot);
TV_API void* camera_channel(Id camera, std::size_t slot);

// Marks the channels that hold one value throughout; nothing happens to a thing that doesn't live.
TV_API void optimize_instance_channels(Id instance);
TV_API void optimize_camera_channels(Id camera);

// ---- for the toolkit's own calls -----------------------------------------------------------------------------------

Channel* living_channel(const void* handle); // null for what is no handle; never looks where it points
const char* channel_owner_name(const Channel& channel);
InstanceChannels& make_channels(Id instance); // those it has, or new ones
void drop_channels(Id instance);
void move_channels(Id from, Id to);       // nothing where `from` has none; else those of `to` are lost
void register_camera_channels(Id camera); // of a new camera
void forget_camera_channels(Id camera);

} // namespace tv
