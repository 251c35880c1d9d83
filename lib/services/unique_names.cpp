#include "lib/services/unique_names.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <deque>
#include <functional>
#include <queue>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lib/platform/memory.h"
#include "lib/services/host.h"
#include "lib/toolkit/scene/name_index.h"
#include "lib/toolkit/scene/scene.h"
#include "lib/toolkit/words/trace.h"

namespace services {
namespace {

constexpr std::size_t name_limit = 255; // bytes, without the end

template <class Value>
using Table = std::unordered_map<std::string, Value, tv::Scene::Hash, std::equal_to<>>;

// What is known of the numbered names of one base name. A name stops being used only when its thing is removed, and
// the scene keeps a list of those: so "all below `next` are used, but for what stands in `freed`" stays true.
struct Numbering {
    uint64_t next = 2;
    std::priority_queue<uint64_t, std::vector<uint64_t>, std::greater<>> freed; // candidates, to be tested again
};

// Names that were noted, each once.
class NotedNames {
public:
    bool contains(std::string_view name) const
    {
        const auto name_of = [this](uint32_t number) { return std::string_view(names_[number]); };
        return index_.find(name, name_of) != tv::NameIndex::none;
    }
    void insert(std::string_view name)
    {
        if (contains(name)) return;
        index_.make_room(); // first, so that nothing has changed where memory runs out
        names_.emplace_back(name);
        index_.add(name, static_cast<uint32_t>(names_.size() - 1));
    }

private:
    tv::NameIndex index_;
    std::deque<std::string> names_;
};

struct NamesOfKind {
    NotedNames noted;
    Table<Numbering> numberings;
    Table<std::string> translations;
    std::size_t removals_seen = 0;
};

std::array<NamesOfKind, tv::kind_count> names_of_kind;

tv::Kind kind_of(int32_t token)
{
    static const std::array<std::pair<int32_t, tv::Kind>, 6> kinds = {{
        {Tv_Inquire_Token("object"), tv::Kind::object},
        {Tv_Inquire_Token("instance"), tv::Kind::instance},
        {Tv_Inquire_Token("surface"), tv::Kind::surface},
        {Tv_Inquire_Token("texture"), tv::Kind::texture},
        {Tv_Inquire_Token("light"), tv::Kind::light},
        {Tv_Inquire_Token("camera"), tv::Kind::camera},
    }};
    for (const auto& [kind_token, kind] : kinds) {
        if (kind_token == token) return kind;
    }
    return tv::Kind::none; // has names of its own, and no things
}

NamesOfKind& names_of(tv::Kind kind)
{
    return names_of_kind[static_cast<std::size_t>(kind)];
}

bool is_used(tv::Kind kind, std::string_view name)
{
    if (names_of(kind).noted.contains(name)) return true;
    return kind != tv::Kind::none && tv::scene().find(kind, name) != tv::no_id;
}

std::string numbered(std::string_view name, uint64_t n)
{
    std::string suffix = " #" + std::to_string(n);
    return std::string(name.substr(0, name_limit - suffix.size())) + suffix;
}

// Takes note of a name that a removed thing has borne: its number is a candidate again.
void note_removed(NamesOfKind& names, std::string_view name)
{
    const std::size_t mark = name.rfind(" #");
    if (mark == std::string_view::npos) return;
    uint64_t n = 0;
    const std::string_view digits = name.substr(mark + 2);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), n);
    if (error != std::errc() || end != digits.data() + digits.size() || n < 2 || digits.front() == '0') return;
    if (name.size() == name_limit) {
        // Perhaps a cut name, which doesn't tell its base name any more: the long ones are counted afresh.
        const std::size_t uncut = mark;
        std::erase_if(names.numberings, [uncut](const auto& entry) { return entry.first.size() > uncut; });
    }
    const auto numbering = names.numberings.find(name.substr(0, mark));
    if (numbering != names.numberings.end() && n < numbering->second.next) numbering->second.freed.push(n);
}

const std::string& name_of_thing(tv::Kind kind, tv::Id id)
{
    static const std::string none;
    const tv::Scene& scene = tv::scene();
    switch (kind) {
    case tv::Kind::object: return scene.objects.at(id).name;
    case tv::Kind::instance: return scene.instances.at(id).name;
    case tv::Kind::surface: return scene.surfaces.at(id).name;
    case tv::Kind::texture: return scene.textures.at(id).name;
    case tv::Kind::light: return scene.lights.at(id).name;
    case tv::Kind::camera: return scene.cameras.at(id).name;
    case tv::Kind::none: break;
    }
    return none;
}

void take_in_removals(tv::Kind kind)
{
    NamesOfKind& names = names_of(kind);
    const std::vector<tv::Id>& removed = tv::scene().removed[static_cast<std::size_t>(kind)];
    if (removed.size() < names.removals_seen) { // the scene has been cleared
        names.numberings.clear();
        names.removals_seen = 0;
    }
    for (; names.removals_seen < removed.size(); ++names.removals_seen) {
        note_removed(names, name_of_thing(kind, removed[names.removals_seen]));
    }
}

std::string unique_name(tv::Kind kind, std::string_view name)
{
    name = name.substr(0, name_limit);
    if (!is_used(kind, name)) return std::string(name);
    take_in_removals(kind);
    Table<Numbering>& numberings = names_of(kind).numberings;
    auto entry = numberings.find(name);
    if (entry == numberings.end()) entry = numberings.emplace(name, Numbering()).first;
    Numbering& numbering = entry->second;
    for (; !numbering.freed.empty(); numbering.freed.pop()) {
        std::string candidate = numbered(name, numbering.freed.top());
        if (!is_used(kind, candidate)) return candidate;
    }
    for (;; ++numbering.next) {
        std::string candidate = numbered(name, numbering.next);
        if (!is_used(kind, candidate)) return candidate;
    }
}

void copy_out(std::string_view name, char* out)
{
    if (!out) return;
    std::memcpy(out, name.data(), name.size());
    out[name.size()] = 0;
}

// make() gives the unique name. Without memory for it the caller gets the name as it is: the run fails anyhow.
template <class Make>
void hand_out(const char* name, char* out, Make make)
{
    if (!platform::noting_short_memory([&] { copy_out(make(), out); }))
        copy_out(std::string_view(name ? name : "").substr(0, name_limit), out);
}

void trace_names(const char* function, int32_t kind, const char* name, const char* result)
{
    tv::trace_begin(function);
    tv::trace_token(kind);
    tv::trace_string(name);
    tv::trace_string(result);
    tv::trace_end();
}

} // namespace

void forget_names()
{
    for (NamesOfKind& names : names_of_kind) names = NamesOfKind();
}

void set_translation(int32_t kind, std::string_view name, std::string_view replacement)
{
    Table<std::string>& translations = names_of(kind_of(kind)).translations;
    if (const auto old = translations.find(name); old != translations.end()) translations.erase(old);
    if (!replacement.empty()) translations.emplace(name, replacement);
}

} // namespace services

using namespace services;

void Import_IO_MakeNameUnique(int32_t kind, const char* name, char* out)
{
    hand_out(name, out, [&] {
        std::string result = unique_name(kind_of(kind), name ? name : "");
        if (tv::trace_enabled()) trace_names("Import_IO_MakeNameUnique", kind, name, result.c_str());
        return result;
    });
}

void Import_IO_MakeAndSaveUniqueName(int32_t kind, const char* name, char* out)
{
    hand_out(name, out, [&] {
        const tv::Kind known_kind = kind_of(kind);
        std::string result = unique_name(known_kind, name ? name : "");
        names_of(known_kind).noted.insert(result);
        if (tv::trace_enabled()) trace_names("Import_IO_MakeAndSaveUniqueName", kind, name, result.c_str());
        return result;
    });
}

void Import_IO_SaveHandleName(int32_t kind, const char* name)
{
    if (tv::trace_enabled()) {
        tv::trace_begin("Import_IO_SaveHandleName");
        tv::trace_token(kind);
        tv::trace_string(name);
        tv::trace_end();
    }
    if (name) platform::noting_short_memory([&] { names_of(kind_of(kind)).noted.insert(name); });
}

const char* Import_IO_TranslateName(int32_t kind, const char* name)
{
    const Table<std::string>& translations = names_of(kind_of(kind)).translations;
    const auto found = translations.empty() || !name ? translations.end() : translations.find(std::string_view(name));
    const char* const result = found == translations.end() ? nullptr : found->second.c_str();
    if (tv::trace_enabled()) trace_names("Import_IO_TranslateName", kind, name, result);
    return result;
}

void Import_IO_Attach_Object_To_World(const char* name, const char* object, char* instance_out, int32_t kind,
                                      const char* parent)
{
    hand_out(name, instance_out, [&] {
        std::string instance = unique_name(tv::Kind::instance, name ? name : "");
        const int32_t instance_token = Tv_Inquire_Token("instance");
        tv::trace_suspend();
        Tv_Add_Instance(instance_token, instance.c_str(), Tv_Inquire_Token("object"), object, 0);
        Tv_Attach(instance_token, instance.c_str(), kind, parent, 0);
        tv::trace_resume();
        if (tv::trace_enabled()) {
            tv::trace_begin("Import_IO_Attach_Object_To_World");
            tv::trace_string(name);
            tv::trace_string(object);
            tv::trace_string(instance.c_str());
            tv::trace_token(kind);
            tv::trace_string(parent);
            tv::trace_end();
        }
        return instance;
    });
}
