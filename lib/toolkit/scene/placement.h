// Where every instance stands: the walk that place_all and the extents share.
#pragma once
#include <cstddef>
#include <vector>

#include "lib/toolkit/matrix.h"
#include "lib/toolkit/scene/scene_store.h"

namespace tv {

// Calls visit(const Placement&) for every place, parents before children, without recursion: hierarchies come 100,000
// levels deep. `parent` counts the visits from 0. False when `limit` places were visited and more are left.
template <class Visit>
bool walk_places(const Scene& in, double time, std::size_t limit, Visit visit)
{
    struct Pending {
        Id instance; // it and the siblings behind it
        Placement parent;
        uint32_t parent_number;
    };
    std::vector<Pending> pending;
    uint32_t visited = 0;
    const auto place = [&](Placement& at) {
        visit(static_cast<const Placement&>(at));
        const Instance& instance = in.instances[at.instance];
        const auto later = [&](Id first) {
            if (first != no_id) pending.push_back({first, at, visited});
        };
        later(instance.children.first);
        if (instance.object != no_id) later(in.objects[instance.object].children.first);
        ++visited;
    };
    Placement root;
    root.instance = world;
    root.world = local_matrix(in.instances[world], time);
    if (limit == 0) return false;
    place(root);
    while (!pending.empty()) {
        if (visited == limit) return false;
        Pending& list = pending.back();
        const Instance& instance = in.instances[list.instance];
        Placement at{list.instance, list.parent_number, list.parent.depth + 1,
                     multiply(local_matrix(instance, time), list.parent.world)};
        if (instance.next_sibling == no_id)
            pending.pop_back();
        else
            list.instance = instance.next_sibling;
        place(at);
    }
    return true;
}

} // namespace tv
