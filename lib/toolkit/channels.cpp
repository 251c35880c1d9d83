#include "lib/toolkit/channels.h"

#include <memory>

#include "lib/toolkit/animation.h"
#include "lib/toolkit/scene_store.h"

namespace tv {

namespace {

template <class Body>
void each_channel(InstanceChannels& all, Body body)
{
    for (std::size_t i = 0; i < 3; ++i) {
        body(all.position[i], 10 + i);
        body(all.scale[i], 13 + i);
        body(all.rotation[i], 16 + i);
    }
}

template <class Body>
void each_channel(CameraChannels& all, Body body)
{
    for (std::size_t i = 0; i < 3; ++i) {
        body(all.look_from[i], 8 + i);
        body(all.look_at[i], 11 + i);
    }
    body(all.roll, 14);
}

template <class Channels>
void own(Channels& all, Kind kind, Id id)
{
    each_channel(all, [&](Channel& channel, std::size_t slot) {
        channel.owner_kind = kind;
        channel.owner = id;
        channel.slot = static_cast<uint8_t>(slot);
        store().channels.insert(&channel);
    });
}

template <class Channels>
void forget(Channels& all)
{
    each_channel(all, [](Channel& channel, std::size_t) { store().channels.erase(&channel); });
}

template <class Things>
auto* living(Things& things, Id id)
{
    return id < things.size() && things[id].alive ? &things[id] : nullptr;
}

} // namespace

Channel* living_channel(const void* handle)
{
    const auto& channels = store().channels;
    return channels.find(handle) == channels.end() ? nullptr : static_cast<Channel*>(const_cast<void*>(handle));
}

const char* channel_owner_name(const Channel& channel)
{
    const Scene& in = scene();
    return channel.owner_kind == Kind::camera ? in.cameras[channel.owner].name.c_str()
                                              : in.instances[channel.owner].name.c_str();
}

InstanceChannels& make_channels(Id instance)
{
    std::unique_ptr<InstanceChannels>& channels = store().scene.instances[instance].channels;
    if (!channels) {
        channels = std::make_unique<InstanceChannels>();
        own(*channels, Kind::instance, instance);
    }
    return *channels;
}

void drop_channels(Id instance)
{
    std::unique_ptr<InstanceChannels>& channels = store().scene.instances[instance].channels;
    if (channels) forget(*channels);
    channels.reset();
}

void move_channels(Id from, Id to)
{
    std::deque<Instance>& instances = store().scene.instances;
    if (from == to || !instances[from].channels) return;
    drop_channels(to);
    instances[to].channels = std::move(instances[from].channels);
    own(*instances[to].channels, Kind::instance, to);
    touch();
}

void register_camera_channels(Id camera)
{
    own(store().scene.cameras[camera].channels, Kind::camera, camera);
}

void forget_camera_channels(Id camera)
{
    forget(store().scene.cameras[camera].channels);
}

Channel* instance_channel(Id instance, std::size_t slot)
{
    if (!living(store().scene.instances, instance)) return nullptr;
    if (slot >= 6 && slot <= 8) slot += 10; // a guard stands for the rotation channel that it guards
    Channel* found = nullptr;
    if (slot < 10 || slot > 18) return found;
    each_channel(make_channels(instance), [&](Channel& channel, std::size_t at) {
        if (at == slot) found = &channel;
    });
    return found;
}

Channel* camera_channel(Id camera, std::size_t slot)
{
    Channel* found = nullptr;
    if (Camera* const thing = living(store().scene.cameras, camera))
        each_channel(thing->channels, [&](Channel& channel, std::size_t at) {
            if (at == slot) found = &channel;
        });
    return found;
}

void optimize_instance_channels(Id instance)
{
    Instance* const thing = living(store().scene.instances, instance);
    if (thing && thing->channels) mark_constant_channels(*thing->channels);
}

void optimize_camera_channels(Id camera)
{
    if (Camera* const thing = living(store().scene.cameras, camera)) mark_constant_channels(thing->channels);
}

} // namespace tv
