#include "restore/facts/scene_reader.h"

#include <algorithm>
#include <iterator>

#include "restore/facts/scene_values.h"

namespace restore {

namespace {

class SceneReader {
public:
    explicit SceneReader(std::FILE* file) : in(file, facts) {}
    SceneFacts read();

    // What the keywords address. Null, with an oddity, where the file has begun nothing of the kind.
    ObjectItem* object()
    {
        if (facts.objects.empty()) odd_place("an object");
        return facts.objects.empty() ? nullptr : &facts.objects.back();
    }
    LightItem* light()
    {
        if (facts.lights.empty()) odd_place("a light");
        return facts.lights.empty() ? nullptr : &facts.lights.back();
    }
    Mover* mover();

    void add_object(bool is_null);
    void add_bone();
    void add_light();
    void object_motion();
    void light_motion();
    void camera_motion();
    void parent();
    void target();
    void pivot();
    void image(bool is_backdrop);
    void custom_size();
    void pass_text() { in.text.rest_of_line(); }
    void pass_envelope();
    void camera_begins();

    // One keyword's operand into the field that it fills.
    template <class Field>
    void object_mark(Field field) // the keyword alone says yes; its operand is a name
    {
        if (ObjectItem* const to = object()) to->*field = true;
        pass_text();
    }
    template <class Field>
    void object_flag(Field field)
    {
        bool value = false;
        ObjectItem* const to = object();
        if (to && in.flag(value)) to->*field = value;
    }
    template <class Field>
    void object_number(Field field)
    {
        if (ObjectItem* const to = object()) in.number_or_envelope(to->*field);
    }
    template <class Field>
    void object_whole(Field field)
    {
        if (ObjectItem* const to = object()) in.whole(to->*field);
    }
    template <class Field>
    void light_number(Field field)
    {
        if (LightItem* const to = light()) in.number_or_envelope(to->*field);
    }
    template <class Field>
    void light_whole(Field field)
    {
        if (LightItem* const to = light()) in.whole(to->*field);
    }

    SceneFacts facts;
    SceneValues in;

private:
    enum class Section : uint8_t { scene, object, bone, light, camera };

    void odd_place(const char* of) { in.odd("\"" + keyword_ + "\" stands ahead of " + of); }
    void head();
    template <class Items>
    bool has_room(const Items& items);
    void name(Mover& of);

    Section section_ = Section::scene;
    std::string keyword_;
    Span keyword_place_;
};

struct Keyword {
    std::string_view word;
    void (*read)(SceneReader& in);
};

using R = SceneReader;

// Sorted by bytes.
constexpr Keyword keywords[] = {
    {"(envelope)", [](R& r) { r.pass_envelope(); }}, // of a keyword that isn't here
    {"AddBone", [](R& r) { r.add_bone(); }},
    {"AddLight", [](R& r) { r.add_light(); }},
    {"AddNullObject", [](R& r) { r.add_object(true); }},
    {"AmbIntensity", [](R& r) { r.in.number_or_envelope(r.facts.ambient_intensity); }},
    {"AmbientColor", [](R& r) { r.in.colour(r.facts.ambient_colour); }},
    {"AmbientIntensity", [](R& r) { r.in.number_or_envelope(r.facts.ambient_intensity); }},
    {"BGImage", [](R& r) { r.image(true); }},
    {"BackdropColor", [](R& r) { r.in.colour(r.facts.backdrop.colour); }},
    {"BoneName", [](R& r) { r.pass_text(); }},
    {"CameraMotion", [](R& r) { r.camera_motion(); }},
    {"ClipMap", [](R& r) { r.object_mark(&ObjectItem::clip_mapped); }},
    {"ConeAngle", [](R& r) { r.light_number(&LightItem::cone_angle); }},
    {"CustomSize", [](R& r) { r.custom_size(); }},
    {"DataOverlayLabel", [](R& r) { r.pass_text(); }},
    {"DepthOfField", [](R& r) { r.in.flag(r.facts.camera.depth_of_field); }},
    {"DisplacementMap", [](R& r) { r.object_mark(&ObjectItem::displaced); }},
    {"EdgeAngle", [](R& r) { r.light_number(&LightItem::edge_angle); }},
    {"FGAlphaImage", [](R& r) { r.image(false); }},
    {"FGImage", [](R& r) { r.image(false); }},
    {"Falloff", [](R& r) { r.light_number(&LightItem::falloff); }},
    {"FirstFrame", [](R& r) { r.in.number(r.facts.first_frame); }},
    {"FlareIntensity", [](R& r) { r.light_number(&LightItem::flare_intensity); }},
    {"FogColor", [](R& r) { r.in.colour(r.facts.fog.colour); }},
    {"FogMaxAmount", [](R& r) { r.in.number_or_envelope(r.facts.fog.most); }},
    {"FogMaxDist", [](R& r) { r.in.number_or_envelope(r.facts.fog.farthest); }},
    {"FogMinAmount", [](R& r) { r.in.number_or_envelope(r.facts.fog.least); }},
    {"FogMinDist", [](R& r) { r.in.number_or_envelope(r.facts.fog.nearest); }},
    {"FogType", [](R& r) { r.in.whole(r.facts.fog.type); }},
    {"FrameStep", [](R& r) { r.in.number(r.facts.frame_step); }},
    {"FramesPerSecond", [](R& r) { r.in.number(r.facts.frames_per_second); }},
    {"GroundColor", [](R& r) { r.in.colour(r.facts.backdrop.ground); }},
    {"LastFrame", [](R& r) { r.in.number(r.facts.last_frame); }},
    {"LensFlare",
     [](R& r) {
         if (LightItem* const to = r.light()) r.in.flag(to->lens_flare);
     }},
    {"LgtIntensity", [](R& r) { r.light_number(&LightItem::intensity); }},
    {"LightColor",
     [](R& r) {
         if (LightItem* const to = r.light()) r.in.colour(to->colour);
     }},
    {"LightFalloff", [](R& r) { r.light_number(&LightItem::falloff); }},
    {"LightMotion", [](R& r) { r.light_motion(); }},
    {"LightName", [](R& r) { r.pass_text(); }}, // of a light where AddLight isn't ahead of it
    {"LightRange", [](R& r) { r.light_number(&LightItem::range); }},
    {"LightType", [](R& r) { r.light_whole(&LightItem::type); }},
    {"LoadObject", [](R& r) { r.add_object(false); }},
    {"Metamorph", [](R& r) { r.object_number(&ObjectItem::morph_amount); }},
    {"MorphAmount", [](R& r) { r.object_number(&ObjectItem::morph_amount); }},
    {"MorphTarget", [](R& r) { r.object_whole(&ObjectItem::morph_target); }},
    {"MotionBlur", [](R& r) { r.in.flag(r.facts.camera.motion_blur); }},
    {"NadirColor", [](R& r) { r.in.colour(r.facts.backdrop.nadir); }},
    {"ObjDissolve", [](R& r) { r.object_number(&ObjectItem::dissolve); }},
    {"ObjectMotion", [](R& r) { r.object_motion(); }},
    {"ParentObject", [](R& r) { r.parent(); }},
    {"PathAlignment", [](R& r) { r.object_flag(&ObjectItem::aligned_to_path); }},
    {"PivotPoint", [](R& r) { r.pivot(); }},
    {"SaveANIMName", [](R& r) { r.pass_text(); }},
    {"SaveAlphaImagesPrefix", [](R& r) { r.pass_text(); }},
    {"SaveAnimationName", [](R& r) { r.pass_text(); }},
    {"SaveFramestoresPrefix", [](R& r) { r.pass_text(); }},
    {"SaveRGBImagesPrefix", [](R& r) { r.pass_text(); }},
    {"ShadowCasting", [](R& r) { r.light_whole(&LightItem::shadow_type); }},
    {"ShadowMapSize", [](R& r) { r.light_whole(&LightItem::shadow_map_size); }},
    {"ShadowOptions", [](R& r) { r.object_whole(&ObjectItem::shadow_options); }},
    {"ShowCamera", [](R& r) { r.camera_begins(); }},
    {"SkyColor", [](R& r) { r.in.colour(r.facts.backdrop.sky); }},
    {"SolidBackdrop", [](R& r) { r.in.flag(r.facts.backdrop.solid); }},
    {"TargetObject", [](R& r) { r.target(); }},
    {"TextureImage", [](R& r) { r.image(false); }},
    {"UnseenByCamera", [](R& r) { r.object_flag(&ObjectItem::unseen_by_camera); }},
    {"UnseenByRays", [](R& r) { r.object_flag(&ObjectItem::unseen_by_rays); }},
    {"ZenithColor", [](R& r) { r.in.colour(r.facts.backdrop.zenith); }},
    {"ZoomFactor", [](R& r) { r.in.number_or_envelope(r.facts.camera.zoom); }},
};
static_assert(std::is_sorted(std::begin(keywords), std::end(keywords),
                             [](const Keyword& a, const Keyword& b) { return a.word < b.word; }));

const Keyword* find_keyword(std::string_view token)
{
    if (token.front() != '(' && (token.front() < 'A' || token.front() > 'Z')) return nullptr; // most are numbers
    const auto at = std::lower_bound(std::begin(keywords), std::end(keywords), token,
                                     [](const Keyword& keyword, std::string_view word) { return keyword.word < word; });
    return at != std::end(keywords) && at->word == token ? at : nullptr;
}

// The first two tokens. Both stay keywords' places where they aren't what they should be.
void SceneReader::head()
{
    facts.is_scene = in.text.token().starts_with("LWSC");
    if (facts.is_scene) in.whole(facts.version);
}

SceneFacts SceneReader::read()
{
    head();
    for (std::string_view token = in.text.token(); !token.empty(); token = in.text.token()) {
        const Keyword* const keyword = find_keyword(token);
        if (!keyword) continue;
        keyword_ = token;
        keyword_place_ = {in.text.begin(), in.text.end()};
        keyword->read(*this);
    }
    facts.bytes = in.text.bytes();
    return std::move(facts);
}

// ---- items ---------------------------------------------------------------------------------------------------------

template <class Items>
bool SceneReader::has_room(const Items& items)
{
    if (items.size() < max_items) return true;
    in.odd("more than " + std::to_string(max_items) + " of \"" + keyword_ + "\"");
    return false;
}

void SceneReader::name(Mover& of)
{
    std::string_view text = in.text.rest_of_line();
    of.name_operand = {in.text.begin(), in.text.end()};
    while (text.ends_with(' ')) text.remove_suffix(1);
    of.name = text;
}

void SceneReader::add_object(bool is_null)
{
    ObjectItem item;
    item.line = in.text.line();
    item.is_null = is_null;
    item.keyword = keyword_place_;
    if (is_null) {
        name(item);
    } else {
        // A path may stand on a later line, as for the importer.
        if (in.text.token().empty()) return in.odd("the file ends where an object's path should stand");
        in.text.put_back();
        item.stored = in.text.rest_of_line();
        item.name_operand = {in.text.begin(), in.text.end()};
        item.line = in.text.line();
    }
    section_ = Section::object;
    if (has_room(facts.objects)) facts.objects.push_back(std::move(item));
}

void SceneReader::add_bone()
{
    section_ = Section::bone;
    if (ObjectItem* const of = object()) ++of->bones;
}

// Without a name behind it there is no light: so does the importer.
void SceneReader::add_light()
{
    LightItem item;
    item.line = in.text.line();
    if (in.text.token() != "LightName") {
        in.odd("AddLight without LightName");
        return in.text.put_back();
    }
    name(item);
    section_ = Section::light;
    if (has_room(facts.lights)) facts.lights.push_back(std::move(item));
}

void SceneReader::camera_begins()
{
    section_ = Section::camera;
    if (facts.camera.line == 0) facts.camera.line = in.text.line();
}

void SceneReader::custom_size()
{
    std::array<int32_t, 2> size{};
    if (in.whole(size[0]) && in.whole(size[1])) facts.camera.custom_size = size;
}

void SceneReader::pass_envelope()
{
    Curve dropped;
    in.envelope(dropped);
}

// ---- what they have ------------------------------------------------------------------------------------------------

// Of the section's item; null for a bone, whose own doings aren't kept.
Mover* SceneReader::mover()
{
    switch (section_) {
    case Section::object: return object();
    case Section::light: return light();
    case Section::camera: return &facts.camera;
    case Section::bone: return nullptr;
    case Section::scene: break;
    }
    odd_place("any object");
    return nullptr;
}

void SceneReader::object_motion()
{
    Curve motion;
    in.motion(motion);
    if (section_ == Section::bone) return;
    if (ObjectItem* const to = object()) to->motion = std::move(motion);
}

void SceneReader::light_motion()
{
    Curve motion;
    in.motion(motion);
    if (LightItem* const to = light()) to->motion = std::move(motion);
}

void SceneReader::camera_motion()
{
    camera_begins();
    in.motion(facts.camera.motion);
}

void SceneReader::parent()
{
    Link link{.item = 0, .line = in.text.line(), .words = keyword_place_};
    if (!in.whole(link.item)) return;
    link.words.end = in.text.end();
    if (Mover* const of = mover()) of->parents.push_back(link);
}

void SceneReader::target()
{
    Link link{.item = 0, .line = in.text.line(), .words = keyword_place_};
    if (!in.whole(link.item)) return;
    link.words.end = in.text.end();
    if (Mover* const of = mover()) of->target = link;
}

void SceneReader::pivot()
{
    std::array<double, 3> point{};
    Span words = keyword_place_;
    for (double& coordinate : point)
        if (!in.number(coordinate)) return;
    words.end = in.text.end();
    if (Mover* const of = mover()) {
        of->pivot = point;
        of->pivot_words.push_back(words);
    }
}

void SceneReader::image(bool is_backdrop)
{
    SceneImage image;
    image.stored = is_backdrop ? in.text.token() : in.text.rest_of_line();
    image.line = in.text.line();
    image.operand = {in.text.begin(), in.text.end()};
    image.is_backdrop = is_backdrop;
    if (!image.stored.empty() && has_room(facts.images)) facts.images.push_back(std::move(image));
}

} // namespace

SceneFacts read_scene(std::FILE* file)
{
    return SceneReader(file).read();
}

} // namespace restore
