#include "host/restoration.h"

#include "host/failure.h"
#include "host/path_display.h"
#include "host/say.h"
#include "lib/toolkit/scene/scene.h"
#include "restore/facts/scene_reader.h"

namespace host {

using messages::message;
using messages::Message;
using restore::Restoration;

void add_restore_options(CommandLine& line, RestoreOptions& options)
{
    line.heading("What is put back");
    line.flag("--as-is", options.as_is, "nothing: the scene as the plug-in reads it");
    line.texts("--no-restore", "NAME", options.no_restore,
               "not this restoration, such as light-parents; may be given several times");
    line.text("--range", "KIND", options.range, "keys: the animation lasts from frame 0 to the last key");
}

restore::Wanted RestoreOptions::wanted() const
{
    restore::Wanted wanted;
    if (as_is) wanted.turn_all_off();
    for (const std::string& name : no_restore) {
        const std::optional<Restoration> restoration = restore::restoration_of(name);
        if (!restoration) {
            std::vector<std::string> known;
            for (std::size_t i = 0; i < restore::restoration_count; ++i)
                known.emplace_back(restore::name_of(static_cast<Restoration>(i)));
            throw WrongUse(message<"restoration-unknown">(name, nearest_word(name, known)));
        }
        wanted.turn_off(*restoration);
    }
    if (!range.empty() && range != "keys") throw WrongUse(message<"range-unknown">(range));
    return wanted;
}

// ---- what is told --------------------------------------------------------------------------------------------------

static void tell_acted(const restore::Acted& acted, const std::string& name)
{
    const auto tell = [&](Restoration restoration, Message told) {
        if (acted[restoration] > 0) say(about(name, std::move(told)));
    };
    const auto count = [&](Restoration restoration) { return acted[restoration]; };
    tell(Restoration::light_parents, message<"light-parents">(count(Restoration::light_parents)));
    tell(Restoration::light_motions, message<"light-motions">(count(Restoration::light_motions)));
    tell(Restoration::targets, message<"targets">(count(Restoration::targets)));
    tell(Restoration::camera_angles, message<"camera-angles">());
    tell(Restoration::linear_keys, message<"linear-keys">(count(Restoration::linear_keys)));
    tell(Restoration::light_envelopes, message<"light-envelopes">(count(Restoration::light_envelopes)));
    tell(Restoration::dark_lights, message<"dark-lights">(count(Restoration::dark_lights)));
    tell(Restoration::zoom, message<"zoom">());
    tell(Restoration::ambient, message<"ambient">());
    tell(Restoration::dissolves, message<"dissolves">(count(Restoration::dissolves)));
    tell(Restoration::unseen, message<"unseen">(count(Restoration::unseen)));
    tell(Restoration::double_sided, message<"double-sided">(count(Restoration::double_sided)));
    tell(Restoration::light_range, message<"light-range">(count(Restoration::light_range)));
    tell(Restoration::area_lights, message<"area-lights">(count(Restoration::area_lights)));
    tell(Restoration::morphs, message<"morphs">(count(Restoration::morphs)));
}

static void tell_losses(const restore::Losses& losses, const std::string& name)
{
    if (!losses.any()) return;
    std::vector<Message> lost;
    const auto add = [&](std::size_t count, Message part) {
        if (count > 0) lost.push_back(std::move(part));
    };
    add(losses.lens_flares, message<"lost-lens-flares">(losses.lens_flares));
    add(losses.fogs, message<"lost-fog">());
    add(losses.negative_lights, message<"lost-negative-lights">(losses.negative_lights));
    add(losses.displacements, message<"lost-displacements">(losses.displacements));
    add(losses.clip_maps, message<"lost-clip-maps">(losses.clip_maps));
    add(losses.bones, message<"lost-bones">(losses.bones));
    add(losses.path_alignments, message<"lost-path-alignments">(losses.path_alignments));
    add(losses.motion_blurs, message<"lost-motion-blur">());
    add(losses.depth_of_field, message<"lost-depth-of-field">());
    add(losses.procedural_textures, message<"lost-procedural-textures">(losses.procedural_textures));
    say(about(name, message<"left-out">(std::move(lost))));
}

static std::size_t tell_doubts(const restore::PutBack& done, const std::string& name)
{
    std::size_t warnings = 0;
    const auto warn = [&](bool so, Message told) {
        if (!so) return;
        say(about(name, std::move(told)));
        ++warnings;
    };
    warn(done.objects_unmatched, message<"objects-unmatched">());
    warn(done.lights_unmatched, message<"lights-unmatched">());
    warn(done.bad_parents > 0, message<"parents-wrong">(done.bad_parents));
    warn(done.bad_targets > 0, message<"targets-wrong">(done.bad_targets));
    warn(done.circular_targets > 0, message<"targets-circular">(done.circular_targets));
    warn(done.unfit_morphs > 0, message<"morphs-unfit">(done.unfit_morphs));
    return warnings;
}

// ---- the work ------------------------------------------------------------------------------------------------------

// By item, the object's file that was read; the references are the items that aren't nulls, in order.
static std::vector<std::string> files_of(const restore::SceneFacts& facts, const std::vector<FileReference>& objects)
{
    std::vector<std::string> files;
    files.reserve(facts.objects.size());
    std::size_t next = 0;
    for (const restore::ObjectItem& item : facts.objects) {
        const bool known = !item.is_null && next < objects.size() && objects[next].reference.stored == item.stored;
        files.push_back(known ? objects[next].found : std::string());
        next += known;
    }
    return files;
}

std::size_t restore_scene(const std::filesystem::path& input, restore::FileKind kind,
                          const std::vector<FileReference>& objects, const RestoreOptions& options)
{
    restore::PutBackSettings settings;
    settings.wanted = options.wanted();
    if (settings.wanted.none()) return 0;
    settings.first_key_only = options.first_key_only;
    settings.all_keys = options.range == "keys";
    settings.unique_surfaces = !options.keep_names;
    const restore::File file = restore::open_regular(input);
    if (!file) return 0;
    restore::PutBack done;
    if (kind == restore::FileKind::scene) {
        const restore::SceneFacts facts = restore::read_scene(file.get());
        if (facts.is_later()) return 0; // its motions are laid out otherwise
        settings.files = files_of(facts, objects);
        done = restore::put_back(tv::scene_to_restore(), facts, settings);
    } else {
        done = restore::put_back(tv::scene_to_restore(), restore::read_object(file.get()), settings);
    }
    const std::string name = shown_path(input.filename());
    const std::size_t warnings = tell_doubts(done, name);
    tell_acted(done.acted, name);
    tell_losses(done.losses, name);
    return warnings;
}

} // namespace host
