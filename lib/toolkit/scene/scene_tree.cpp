// Two kinds of parent: an instance, and an object, whose children stand in each instance of it.
#include "lib/toolkit/scene/scene_tree.h"

#include <unordered_set>

#include "lib/toolkit/report.h"

namespace tv {

namespace {

ChildList& children_of(Kind kind, Id id)
{
    Scene& in = store().scene;
    return kind == Kind::object ? in.objects[id].children : in.instances[id].children;
}

// A place in the tree: an instance, or an object with all its children.
struct Node {
    Kind kind = Kind::none;
    Id id = no_id;
    friend bool operator==(const Node&, const Node&) = default;
};

// Walks the tree from one node, one node a step, each object entered once however many instances lead to it.
// Lists of siblings are walked one by one, so that a step costs the same everywhere.
class Walk {
public:
    Walk(bool upward, Node start) : upward_(upward) { enter(start); }

    bool done() const { return pending_.empty(); }

    // Takes one more node; true when it is `wanted`.
    bool step(const Node& wanted)
    {
        const Pending at = pending_.back();
        pending_.pop_back();
        const Store& in = store();
        if (at.in_list != List::none) {
            const Id next = at.in_list == List::siblings ? in.scene.instances[at.node.id].next_sibling
                                                         : in.sharers[at.node.id].next;
            if (next != no_id) pending_.push_back({{Kind::instance, next}, at.in_list});
        }
        if (at.node == wanted) return true;
        if (at.node.kind == Kind::object) {
            const Id first = upward_ ? in.first_instance[at.node.id] : in.scene.objects[at.node.id].children.first;
            if (first != no_id) pending_.push_back({{Kind::instance, first}, upward_ ? List::sharers : List::siblings});
            return false;
        }
        const Instance& instance = in.scene.instances[at.node.id];
        if (upward_) {
            if (instance.parent_kind != Kind::none) enter({instance.parent_kind, instance.parent});
        } else {
            if (instance.children.first != no_id)
                pending_.push_back({{Kind::instance, instance.children.first}, List::siblings});
            if (instance.object != no_id) enter({Kind::object, instance.object});
        }
        return false;
    }

private:
    enum class List : uint8_t { none, siblings, sharers };
    struct Pending {
        Node node;
        List in_list = List::none; // the rest of the list follows
    };

    void enter(Node node)
    {
        const uint64_t key = uint64_t{node.id} << 1 | (node.kind == Kind::object ? 1u : 0u);
        if (entered_.insert(key).second) pending_.push_back({node});
    }

    bool upward_;
    std::vector<Pending> pending_;
    std::unordered_set<uint64_t> entered_;
};

// True when `below` is `top` or stands somewhere in or under it. Searched from both ends in turn, so that the shorter
// way decides: a long chain costs as little built from its top as from its end.
bool stands_in(const Node& below, const Node& top)
{
    Walk down(false, top), up(true, below);
    while (!down.done() && !up.done())
        if (down.step(below) || up.step(top)) return true;
    return false;
}

bool would_close_cycle(Id instance, const Node& parent)
{
    const Instance& child = scene().instances[instance];
    const Node top{Kind::instance, instance};
    if (instance == world || parent == top || parent == Node{Kind::object, child.object}) return true;
    if (parent == Node{Kind::instance, world}) return false;
    const bool leaf = child.children.first == no_id &&
                      (child.object == no_id || scene().objects[child.object].children.first == no_id);
    return !leaf && stands_in(parent, top);
}

} // namespace

bool object_would_close_cycle(Id instance, Id object)
{
    const Object& shape = scene().objects[object];
    if (shape.children.first == no_id) {
        const Instance& at = scene().instances[instance];
        if (at.parent_kind == Kind::none && at.children.first == no_id) return false;
    }
    return stands_in({Kind::instance, instance}, {Kind::object, object});
}

void set_object(Id instance, Id object)
{
    Store& in = store();
    Instance& at = in.scene.instances[instance];
    if (at.object == object) return;
    Store::Sharers& links = in.sharers[instance];
    if (at.object != no_id) {
        --in.scene.objects[at.object].instance_count;
        (links.previous != no_id ? in.sharers[links.previous].next : in.first_instance[at.object]) = links.next;
        if (links.next != no_id) in.sharers[links.next].previous = links.previous;
        links = {};
    }
    at.object = object;
    if (object != no_id) {
        ++in.scene.objects[object].instance_count;
        links.next = in.first_instance[object];
        if (links.next != no_id) in.sharers[links.next].previous = instance;
        in.first_instance[object] = instance;
    }
    touch();
}

void detach(Id instance)
{
    Scene& in = store().scene;
    Instance& at = in.instances[instance];
    if (at.parent_kind == Kind::none) return;
    ChildList& siblings = children_of(at.parent_kind, at.parent);
    (at.previous_sibling != no_id ? in.instances[at.previous_sibling].next_sibling : siblings.first) = at.next_sibling;
    (at.next_sibling != no_id ? in.instances[at.next_sibling].previous_sibling : siblings.last) = at.previous_sibling;
    --siblings.count;
    at.parent_kind = Kind::none;
    at.parent = at.previous_sibling = at.next_sibling = no_id;
    touch();
}

void attach(Id instance, Kind parent_kind, Id parent, const char* parent_name)
{
    Scene& in = store().scene;
    Instance& at = in.instances[instance];
    if (parent == no_id || would_close_cycle(instance, {parent_kind, parent})) {
        report(4, "ERR_SCENE_BAD_PARENT", function_name(Function::attach), {at.name, parent_name ? parent_name : ""});
        if (instance == world) return;
        parent_kind = Kind::instance;
        parent = world;
    }
    detach(instance);
    ChildList& siblings = children_of(parent_kind, parent);
    at.parent_kind = parent_kind;
    at.parent = parent;
    at.previous_sibling = siblings.last;
    (siblings.last != no_id ? in.instances[siblings.last].next_sibling : siblings.first) = instance;
    siblings.last = instance;
    ++siblings.count;
    touch();
}

} // namespace tv
