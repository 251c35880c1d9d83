// The scene as the toolkit holds it: the read side, for exporters and tests.
//
// Things are numbered in each kind from 0 in the order of making; a number stays good until clear_scene(), also when
// the thing has been removed (`alive` is false then). Names are Latin-1 and unique in their kind.
// Coordinates are the toolkit's: right-handed, matrices M[row][column] with row vectors on the left, translation in
// row 3, angles of channels in radians, times in 1/4800 s.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lib/toolkit/animation/channel.h"
#include "lib/toolkit/kinds.h"
#include "lib/toolkit/scene/name_index.h"
#include "lib/toolkit/vc4_tv.h"

namespace tv {

using Vec3 = std::array<float, 3>;
using Matrix = std::array<float, 16>; // row by row

inline constexpr Matrix identity_matrix = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

// ---- objects -------------------------------------------------------------------------------------------------------

// Polygons of one "indexedpolygons" primitive. Nothing in it has been tested: corners may name no point.
struct Primitive {
    std::vector<float> positions;    // x, y, z a point
    std::vector<int32_t> sizes;      // corners of each polygon, as given
    std::vector<int32_t> corners;    // point numbers from 1, polygon after polygon, as given
    std::vector<Id> polygon_surface; // a surface number a polygon; empty: the object's own surface for all
    int32_t index_offset = 0;        // "indiceoffset"
    bool clockwise = false;          // corners run clockwise seen from the visible side
};

// Children are an intrusive list, so that taking one out costs the same however many there are.
struct ChildList {
    Id first = no_id, last = no_id;
    uint32_t count = 0;
};

struct Object {
    std::string name;
    bool alive = true;
    std::vector<Primitive> primitives;
    Id surface = no_id;                   // by Tv_Surfacelink
    std::optional<float> smoothing_angle; // degrees; set by "calcnormals": vertex normals up to this angle
    ChildList children;                   // instances that show in every instance of this object
    uint32_t instance_count = 0;          // living instances of it
    std::string shown_name;               // restored: the name in outputs, Latin-1; empty: `name`
    // Restored: where the points of each primitive go in full morph, as many numbers as its `positions`. Empty: no target.
    std::vector<std::vector<float>> morph_target;
};

// ---- what a host puts back ------------------------------------------------------------------------------------------
//
// Fields that bear "restored" in their comment are written by the host after an import and read by exporters. The calls
// of vc4_tv.h neither set nor read them; a thing is made without them, and without them everything is as the calls left
// it. Coordinates, angles and times are the toolkit's, as in the channels beside them.

// A number that may change. Without keys it is `rest` at all times.
struct Curve {
    double rest = 0;
    Channel channel;
    bool moves() const { return !channel.keys.empty(); }
};

// A light's or camera's own motion below a parent, as an instance has it: it looks along its own -Z. A camera or light
// with a rig is placed by it, and the fields that say where it shines or looks have no say.
struct Rig {
    InstanceChannels channels; // without keys: `position` and `rotation` below
    Vec3 position{0, 0, 0};
    Vec3 rotation{0, 0, 0}; // Euler angles about X, Y, Z, radians; order 8: Z first, then X, then Y
    Vec3 pivot{0, 0, 0};    // the point that it turns about, in its own coordinates
    Id parent = no_id;      // instance; no_id: the world
    Id target = no_id;      // instance whose pivot it looks at, at all times; its own rotation about Z stays
};

// Numbers that no field has a place for, for the extras of a file.
struct Extra {
    std::string name; // ASCII
    std::vector<double> values;
};

// ---- instances -----------------------------------------------------------------------------------------------------

enum class ProjectionModel : uint8_t { orthographic, spherical, cylindrical, box };

// The frame in which an instance's textures lie: O, and the points that one unit of u, v and w reach from it.
struct TextureProjection {
    bool enabled = false;
    bool world_space = false; // "coordsystem": else the primitive's own space
    Vec3 origin{0, 0, 0}, upoint{1, 0, 0}, vpoint{0, 1, 0}, wpoint{0, 0, 1};
    ProjectionModel model = ProjectionModel::orthographic;
};

struct Instance {
    std::string name;
    bool alive = true;
    Id object = no_id;             // no_id: an empty node
    Kind parent_kind = Kind::none; // instance, object, or none when detached
    Id parent = no_id;
    Id previous_sibling = no_id, next_sibling = no_id;
    ChildList children;              // instances that move with this one
    Matrix matrix = identity_matrix; // the static placement; not used while there are channels with keys
    Tv_Local_Axes axes;
    TextureProjection projection;
    std::unique_ptr<InstanceChannels> channels; // null: no animation

    // Restored:
    std::string shown_name;  // the name in outputs, Latin-1; empty: `name`
    std::string stored_path; // as the file has it, Latin-1; empty: none
    Id target = no_id;       // instance whose pivot this one looks at along its own +Z of the file (-Z here)
    Curve dissolve;          // 0 solid to 1 not there
    bool unseen = false;     // isn't drawn, but its children and its shadows are
    Curve morph;             // weight of the object's morph target, 1 for all the way
    std::vector<Extra> extras;
};

// ---- surfaces and textures -----------------------------------------------------------------------------------------

// What a layer acts on. The words are the toolkit's: "color", "diffuse", "luminouscolor", "luminous", "bump", "bumpu",
// "bumpv", "faceopacity", "specular", "reflectopacity".
enum class LayerChannel : uint8_t {
    color,
    diffuse,
    luminous_color,
    luminous,
    bump,
    bump_u,
    bump_v,
    face_opacity,
    specular,
    reflect_opacity
};
inline constexpr std::size_t layer_channel_count = 10;

struct Layer {
    std::string name; // "layer 1"
    bool enabled = true;
    Id texture = no_id; // may be no_id though texture_name is set: a link to what doesn't exist (yet)
    std::string texture_name;
    struct Modulation {
        bool stated = false; // "modulate" came for this channel
        bool enabled = false, invert = false;
        std::optional<Vec3> multiplier; // one number is stored three times
        std::optional<float> blend;     // "colorblend", the weight of the layer's own colour
        std::optional<float> mix;       // "mix", the weight of the surface's own value
    };
    std::array<Modulation, layer_channel_count> channels;
    float uscale = 1, vscale = 1; // "colorblend" "diffuse" is stored at LayerChannel::diffuse, as the word says
    Vec3 scale{1, 1, 1}, translate{0, 0, 0};
    bool placed = false; // scale and translate came: a procedural's own placement
    bool world_space = false;
};

struct Surface {
    std::string name;
    bool alive = true;
    Vec3 color{1, 1, 1};
    bool has_color = false; // "color" came
    bool phong = false;     // "model" "phong" came
    int32_t shininess = 0;
    float metal = 0, ambient = 0, diffuse = 1, specular = 0, luminous = 0, reflect = 0, ior = 1;
    float face_opacity = 1; // "facecoeff", not limited
    bool edge_enabled = false;
    float edge_opacity = 1, edge_exponent = 1;
    bool environment_enabled = false;                     // "sphenvmap"
    float environment_reflect = 0, environment_yaxis = 0; // yaxis as given by the file, no unit fixed
    Id environment = no_id;                               // texture
    std::vector<Layer> layers;                            // in the order of making
    bool double_sided = false;                            // restored
};

enum class TextureKind : uint8_t { none, image, procedural };

struct Texture {
    std::string name;
    bool alive = true;
    TextureKind kind = TextureKind::none;
    int32_t image_type = 0; // as Tv_Determine_Image_File_Type gave it
    std::string file_name;  // image
    bool mipmap = false, wrap_u = true, wrap_v = true, enabled = true;
    std::string procedural; // "checker", "grid", "rawturbulence", "off"
    Vec3 color1{1, 1, 1}, color2{0, 0, 0};
    float param1 = 1, param2 = 1;
};

// ---- lights, camera, backdrop, time line ---------------------------------------------------------------------------

enum class LightModel : uint8_t { direction, point, spot, ambient };

struct Light {
    std::string name;
    bool alive = true;
    LightModel model = LightModel::direction;
    Vec3 color{1, 1, 1};
    float intensity = 1;
    float cutoff = 30, delta = 5; // degrees: half angle of the cone, and its soft edge
    std::optional<Vec3> shine_direction, shine_from, shine_at;
    bool shadow_map = false;
    int32_t shadow_map_size = 0; // 0: the global value
    bool decay = false;

    // Restored:
    std::string shown_name;                                          // the name in outputs, Latin-1; empty: `name`
    std::optional<Rig> rig;                                          // its own motion, parent and target
    std::optional<Curve> intensity_curve, cutoff_curve, delta_curve; // instead of the fields above
    std::optional<std::array<Curve, 3>> color_curve;                 // red, green, blue
    std::optional<double> range;                                     // distance at which its strength has fallen to 0
    std::vector<Extra> extras;
};

struct Camera {
    std::string name;
    bool alive = true;
    bool active = false;
    bool perspective = true;
    float focal_length = 5;
    Vec3 look_from{0, 0, 0}, look_at{0, 0, -1}, look_up{0, 1, 0};
    std::array<float, 2> window{10, 10}; // width and height of the picture at the focal length
    CameraChannels channels;

    // Restored:
    std::optional<Rig> rig;    // instead of the path of look-from and look-at points, and of roll
    std::optional<Curve> zoom; // half the picture's height at distance 1 is 1 / zoom; instead of `window`
};

enum class BackdropScheme : uint8_t { none, color, gradient, surface };

struct Backdrop {
    BackdropScheme scheme = BackdropScheme::none;
    std::optional<Vec3> color;
    std::array<std::optional<Vec3>, 4> gradient; // zenith, sky, ground, nadir
    bool horizon_top = false, horizon_bottom = false;
    float horizon_position = 0.5f;
    std::string surface; // "surfacelink"
};

struct TimeLine {
    int32_t length = 0, start = 0, end = 0, current = 0, frame_pause = 0, frame_step = 1, frame_rate = 30;
};

// Restored: the stretch of time that a file lasts, in frames from frame 0, which lies at toolkit time 0.
struct Clip {
    double first_frame = 0, last_frame = 0, rate = 30; // frames a second
};

// Restored: light from everywhere. A surface sends intensity * color * its diffuse coefficient * its own colour.
struct Ambient {
    Vec3 color{1, 1, 1};
    double intensity = 0;
};

// ---- the scene -----------------------------------------------------------------------------------------------------

struct Scene {
    std::deque<Object> objects;     // deques: references stay good while things are added
    std::deque<Instance> instances; // number 0 is "world"
    std::deque<Surface> surfaces;
    std::deque<Texture> textures;
    std::deque<Light> lights; // number 0 is "defaultambient"
    std::deque<Camera> cameras;
    Backdrop backdrop;
    TimeLine time_line;
    std::array<int32_t, 2> resolution{0, 0}; // 0: none given
    std::optional<Clip> clip;                // restored
    std::optional<Ambient> ambient;          // restored
    std::vector<Extra> extras;               // restored

    // The number of the living thing of this name, or no_id. Constant time.
    TV_API Id find(Kind kind, std::string_view name) const;

    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };
    std::array<NameIndex, kind_count> names; // of the living things; the toolkit's own
    // Things that have been removed, kind by kind, in order: their names are free again.
    std::array<std::vector<Id>, kind_count> removed;
    uint64_t revision = 0; // rises with each change of what extents depend on
    uint32_t keys_made = 0;
};

TV_API const Scene& scene();
// The same, for a host that puts things back after an import. Names, numbers of things and the tree aren't its to change.
TV_API Scene& scene_to_restore();

// Back to the empty scene: "world", "defaultambient", the time line's start values, no names noted. Channel handles and
// numbers of things are void.
TV_API void clear_scene();

// Every instance in a place of its own: an instance of an object with children stands once for each way from "world".
// Visits parents before children. `world` is the placement at `time`; `depth` is 0 for "world".
// Fails (false, `out` holds what was found so far) when there are more than `limit` places: instances of objects with
// children multiply.
struct Placement {
    Id instance = no_id;
    uint32_t parent = 0; // index in the list, of the instance it hangs under or in; the first names itself
    uint32_t depth = 0;
    std::array<double, 16> world{};
};
TV_API bool place_all(const Scene& scene, double time, std::size_t limit, std::vector<Placement>& out);

// True when channels exist and at least one holds a key: then they, not the matrix, place the instance.
TV_API bool is_animated(const Instance& instance);

// The instance's own placement below its parent at `time`: channels where it has keys, else the static matrix.
// A double matrix, row vectors on the left: ((p - pivot) * S) * Rz * Rx * Ry + T.
TV_API std::array<double, 16> local_matrix(const Instance& instance, double time);

} // namespace tv
