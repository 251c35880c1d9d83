#include "lib/toolkit/scene/channels.h"

#include <memory>

#include "lib/toolkit/animation/animation.h"
#include "lib/toolkit/scene/scene_store.h"

namespace tv {

namespace {

// The channel at a slot, or null.
Channel* at_slot(InstanceChannels& all, std::size_t slot)
{
    if (slot < 10 || slot > 18) return nullptr;
    std::array<Channel, 3>* const axes[] = {&all.position, &all.scale, &all.rotation};
    return &(*axes[(slot - 10) / 3])[(slot - 10) % 3];
}

Channel* at_slot(CameraChannels& all, std::size_t slot)
{
    if (slot < 8 || slot > 14) return nullptr;
    if (slot == 14) return &all.roll;
    return slot < 11 ? &all.look_from[slot - 8] : &all.look_at[slot - 11];
}

constexpr unsigned slot_bits = 5;
constexpr std::size_t slots = std::size_t{1} << slot_bits;

template <class Channels>
void own(Channels& all, Kind kind, Id id)
{
    for (std::size_t slot = 0; slot < slots; ++slot) {
        Channel* const channel = at_slot(all, slot);
        if (!channel) continue;
        channel->owner_kind = kind;
        channel->owner = id;
        channel->slot = static_cast<uint8_t>(slot);
    }
}

// Gives the set its number.
template <class Channels>
void enter(Channels& all, const Store::ChannelSet& entry)
{
    Store& in = store();
    in.channel_sets.push_back(entry);
    all.number = in.first_channel_set + in.channel_sets.size() - 1;
}

void leave(uint64_t number)
{
    store().channel_sets[number - store().first_channel_set] = {};
}

template <class Channels>
void* handle_of(Channels& all, std::size_t slot)
{
    static_assert(sizeof(void*) >= sizeof(uint64_t)); // a number and a slot need more than 32 bits
    return at_slot(all, slot) ? reinterpret_cast<void*>(all.number << slot_bits | slot) : nullptr;
}

template <class Things>
auto* living(Things& things, Id id)
{
    return id < things.size() && things[id].alive ? &things[id] : nullptr;
}

} // namespace

Channel* living_channel(const void* handle)
{
    const Store& in = store();
    const uint64_t value = reinterpret_cast<uintptr_t>(handle), number = value >> slot_bits;
    const std::size_t slot = value % slots;
    if (number < in.first_channel_set || number - in.first_channel_set >= in.channel_sets.size()) return nullptr;
    const Store::ChannelSet& set = in.channel_sets[number - in.first_channel_set];
    if (set.of_instance) return at_slot(*set.of_instance, slot);
    return set.of_camera ? at_slot(*set.of_camera, slot) : nullptr;
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
        auto made = std::make_unique<InstanceChannels>();
        enter(*made, {made.get(), nullptr});
        own(*made, Kind::instance, instance);
        channels = std::move(made);
    }
    return *channels;
}

void drop_channels(Id instance)
{
    std::unique_ptr<InstanceChannels>& channels = store().scene.instances[instance].channels;
    if (channels) leave(channels->number);
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
    CameraChannels& channels = store().scene.cameras[camera].channels;
    enter(channels, {nullptr, &channels});
    own(channels, Kind::camera, camera);
}

void forget_camera_channels(Id camera)
{
    leave(store().scene.cameras[camera].channels.number);
}

void* instance_channel(Id instance, std::size_t slot)
{
    if (!living(store().scene.instances, instance)) return nullptr;
    if (slot >= 6 && slot <= 8) slot += 10; // a guard stands for the rotation channel that it guards
    return slot < 10 || slot > 18 ? nullptr : handle_of(make_channels(instance), slot);
}

void* camera_channel(Id camera, std::size_t slot)
{
    Camera* const thing = living(store().scene.cameras, camera);
    return thing ? handle_of(thing->channels, slot) : nullptr;
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
