#include "restore/after/target_circles.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace restore {

namespace {

// Strongly connected components: R. Tarjan, Depth-first search and linear graph algorithms, 1972; with a stack of its
// own, since chains come 30,000 instances long.
class Components {
public:
    explicit Components(const tv::Scene& scene) : scene_(scene), nodes_(scene.instances.size())
    {
        for (tv::Id id = 0; id < nodes_.size(); ++id)
            if (nodes_[id].index == 0) visit(id);
    }

    tv::Id parent_of(tv::Id id) const
    {
        const tv::Instance& instance = scene_.instances[id];
        return instance.parent_kind == tv::Kind::instance ? instance.parent : tv::no_id;
    }
    // What the target of `id` makes it depend on.
    tv::Id behind_target(tv::Id id) const
    {
        const tv::Id target = scene_.instances[id].target;
        return target == tv::no_id ? tv::no_id : parent_of(target);
    }
    bool together(tv::Id a, tv::Id b) const { return nodes_[a].component == nodes_[b].component; }

private:
    struct Node {
        uint32_t index = 0, lowest = 0; // from 1, in the order of visits; lowest of those that can be reached
        uint32_t component = 0;         // from 1; 0: not yet known
    };
    struct Visit {
        tv::Id id;
        int edge; // 0 to the parent, 1 to what stands behind the target
    };

    void enter(tv::Id id, std::vector<Visit>& visits)
    {
        nodes_[id].index = nodes_[id].lowest = ++visited_;
        open_.push_back(id);
        visits.push_back({id, 0});
    }

    void visit(tv::Id start)
    {
        std::vector<Visit> visits;
        enter(start, visits);
        while (!visits.empty()) {
            Visit& at = visits.back();
            const tv::Id id = at.id;
            if (at.edge < 2) {
                const tv::Id to = at.edge++ == 0 ? parent_of(id) : behind_target(id);
                if (to == tv::no_id) continue;
                if (nodes_[to].index == 0)
                    enter(to, visits);
                else if (nodes_[to].component == 0)
                    nodes_[id].lowest = std::min(nodes_[id].lowest, nodes_[to].index);
                continue;
            }
            visits.pop_back();
            if (!visits.empty()) {
                Node& before = nodes_[visits.back().id];
                before.lowest = std::min(before.lowest, nodes_[id].lowest);
            }
            if (nodes_[id].lowest == nodes_[id].index) close(id);
        }
    }

    void close(tv::Id first)
    {
        ++components_;
        tv::Id id = tv::no_id;
        do {
            id = open_.back();
            open_.pop_back();
            nodes_[id].component = components_;
        } while (id != first);
    }

    const tv::Scene& scene_;
    std::vector<Node> nodes_;
    std::vector<tv::Id> open_; // of components not closed yet
    uint32_t visited_ = 0, components_ = 0;
};

} // namespace

std::size_t drop_circular_targets(tv::Scene& scene)
{
    const bool any = std::any_of(scene.instances.begin(), scene.instances.end(),
                                 [](const tv::Instance& instance) { return instance.target != tv::no_id; });
    if (!any) return 0;
    const Components components(scene);
    std::vector<tv::Id> circular;
    for (tv::Id id = 0; id < scene.instances.size(); ++id) {
        const tv::Instance& instance = scene.instances[id];
        if (instance.target == tv::no_id) continue;
        const tv::Id behind = components.behind_target(id);
        // Its own pivot has no direction. A parent's circle can't be: the toolkit sees to that.
        if (instance.target == id || (behind != tv::no_id && components.together(id, behind))) circular.push_back(id);
    }
    for (const tv::Id id : circular) scene.instances[id].target = tv::no_id;
    return circular.size();
}

} // namespace restore
