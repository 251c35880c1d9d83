#include "lib/import/lw/lws/keywords.h"

#include <cstring>

// In the order of the numbers.
static constexpr const char* keywords[KW_COUNT] = {
    "AdaptiveSampling", "AdaptiveThreshold", "AddBone",         "AddLight",        "AddNullObject",
    "AmbientColor",     "AmbIntensity",      "AnimatedDither",  "Antialiasing",    "BackdropColor",
    "BGImage",          "BlurLength",        "CameraMotion",    "ConeAngle",       "CustomSize",
    "DepthOfField",     "DitherIntensity",   "EdgeAngle",       "EnableLensFlare", "EnableShadowMaps",
    "EndBehavior",      "(envelope)",        "Falloff",         "FieldRendering",  "FilmSize",
    "FilterType",       "FirstFrame",        "FogEffect",       "FogType",         "FramesPerSecond",
    "FrameStep",        "GridSize",          "GroundColor",     "LastFrame",       "LayoutGrid",
    "LensFlare",        "Letterbox",         "LgtIntensity",    "LightColor",      "LightMotion",
    "LightName",        "LightType",         "LoadObject",      "LookAheadFrames", "Metamorph",
    "MorphSurfaces",    "MorphTarget",       "MotionBlur",      "NadirColor",      "ObjDissolve",
    "ObjectMotion",     "ObjPolygonEdges",   "Overscan",        "ParentObject",    "PathAlignment",
    "PivotPoint",       "PixelAspectRatio",  "RayTraceEffects", "RenderMode",      "Resolution",
    "ShadowCasting",    "ShadowFuzziness",   "ShadowMapSize",   "ShadowOptions",   "ShowBGImage",
    "ShowBones",        "ShowCamera",        "ShowFogRadius",   "ShowLights",      "ShowMotionPath",
    "ShowObjects",      "ShowRedraw",        "ShowSafeAreas",   "SkyColor",        "SolidBackdrop",
    "TargetObject",     "UseConeAngle",      "ViewAimpoint",    "ViewDirection",   "ViewMode",
    "ViewZoomFactor",   "ZenithColor",       "ZenithOnly",      "ZoomFactor",
};

// A perfect hash of length and three characters, whose factors the compiler looks for: one probe tells whether a token
// is a keyword. Stray tokens are most of a scene, so this is asked for nearly every word of it.
static constexpr unsigned slot_count = 1024;
static constexpr uint8_t no_keyword = 0xff;

static constexpr std::size_t text_length(const char* text)
{
    std::size_t n = 0;
    while (text[n]) ++n;
    return n;
}

static constexpr unsigned hash(const char* text, std::size_t length, unsigned factor)
{
    const unsigned first = static_cast<unsigned char>(text[0]);
    const unsigned middle = static_cast<unsigned char>(text[length / 2]);
    const unsigned last = static_cast<unsigned char>(text[length - 2]);
    const unsigned mixed = (first << 21 ^ middle << 14 ^ last << 7 ^ static_cast<unsigned>(length)) * factor;
    return mixed >> 22;
}

struct Keyword_Slots {
    unsigned factor;
    std::size_t shortest, longest;
    uint8_t id[slot_count];
};

static constexpr Keyword_Slots make_slots()
{
    Keyword_Slots slots = {};
    slots.shortest = slots.longest = text_length(keywords[0]);
    for (const char* word : keywords) {
        const std::size_t length = text_length(word);
        if (length < slots.shortest) slots.shortest = length;
        if (length > slots.longest) slots.longest = length;
    }
    for (unsigned factor = 0x9e3779b1u;; factor += 2) {
        for (uint8_t& id : slots.id) id = no_keyword;
        bool clash = false;
        for (uint8_t i = 0; i < KW_COUNT && !clash; ++i) {
            uint8_t& id = slots.id[hash(keywords[i], text_length(keywords[i]), factor)];
            clash = id != no_keyword;
            id = i;
        }
        if (clash) continue;
        slots.factor = factor;
        return slots;
    }
}

static constexpr Keyword_Slots slots = make_slots();

int16_t lws_find_keyword(const char* text, std::size_t length)
{
    if (length < slots.shortest || length > slots.longest) return KW_NONE;
    const uint8_t id = slots.id[hash(text, length, slots.factor)];
    if (id == no_keyword || std::strncmp(keywords[id], text, length) != 0 || keywords[id][length] != 0) return KW_NONE;
    return id;
}

const char* lws_keyword_name(int16_t id)
{
    return id >= 0 && id < KW_COUNT ? keywords[id] : "(unknown)";
}
