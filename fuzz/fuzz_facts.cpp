// Facts of scene and object files. What they say has to be sound whatever the file holds, and an object that they call
// readable has to be one that the plug-in reads.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "fuzz/harness.h"
#include "restore/facts/file_head.h"
#include "restore/facts/object_facts.h"
#include "restore/facts/references.h"
#include "restore/facts/scene_reader.h"

using restore::Curve;
using restore::Span;

static void check(const Curve& curve)
{
    if (curve.values.size() != curve.keys.size() * curve.channels) fuzz::fail("a curve's keys and values differ");
    for (std::size_t i = 1; i < curve.keys.size(); ++i)
        if (!(curve.keys[i - 1].frame < curve.keys[i].frame)) fuzz::fail("a curve's keys aren't in order");
    std::vector<double> values(curve.channels);
    for (const double frame : {-1e9, 0.0, 7.5, 1e9, std::nan("")}) curve.evaluate(frame, values);
}

static void check(const restore::Number& number)
{
    if (number.envelope) check(*number.envelope);
    if (number.given && !std::isfinite(number.value)) fuzz::fail("a number isn't finite");
}

static void check(const restore::Colour& colour)
{
    if (colour.envelope) check(*colour.envelope);
    colour.at(3);
}

static std::string_view text_of(const Span& span, std::string_view file)
{
    if (span.begin > span.end || span.end > file.size()) fuzz::fail("a place lies outside the file");
    return file.substr(span.begin, span.end - span.begin);
}

static void check(const restore::Mover& mover, std::string_view file)
{
    check(mover.motion);
    for (const restore::Link& parent : mover.parents)
        if (!text_of(parent.words, file).starts_with("ParentObject"))
            fuzz::fail("a parent isn't where it is said to be");
    for (const Span& pivot : mover.pivot_words)
        if (!text_of(pivot, file).starts_with("PivotPoint")) fuzz::fail("a pivot isn't where it is said to be");
    const std::string_view name = text_of(mover.name_operand, file);
    if (name.size() <= 4096 && !name.starts_with(mover.name)) fuzz::fail("a name isn't where it is said to be");
}

static void check_scene(std::string_view file, std::FILE* stream)
{
    const restore::SceneFacts scene = restore::read_scene(stream);
    if (scene.bytes != file.size()) fuzz::fail("a scene wasn't read to its end");
    for (const restore::ObjectItem& object : scene.objects) {
        check(object, file);
        check(object.dissolve);
        check(object.morph_amount);
        if (text_of(object.keyword, file) != (object.is_null ? "AddNullObject" : "LoadObject"))
            fuzz::fail("an object isn't where it is said to be");
    }
    for (const restore::LightItem& light : scene.lights) {
        check(light, file);
        check(light.colour);
        check(light.intensity);
        check(light.cone_angle);
    }
    check(scene.camera, file);
    check(scene.camera.zoom);
    check(scene.ambient_colour);
    text_of(scene.ambient_colour.operand, file);
    for (const restore::Reference& reference : restore::references_of(scene))
        if (reference.stored.empty() || reference.line == 0) fuzz::fail("a reference without a path or a line");
}

static void check_object(const uint8_t* data, std::size_t size, std::FILE* stream)
{
    const restore::ObjectFacts object = restore::read_object(stream);
    bool bad = false;
    for (const restore::SurfaceFacts& surface : object.surfaces) {
        for (const restore::BadSubChunk& sub : surface.bad)
            if (sub.begin < surface.sub_chunks || sub.end <= sub.begin || sub.end > size)
                fuzz::fail("a sub-chunk lies outside the file");
        bad = bad || !surface.bad.empty();
    }
    if (object.readable != object.problem.empty()) fuzz::fail("an object's readability and problem differ");
    const bool imported = fuzz::convert(data, size);
    if (object.is_object && !bad && imported != object.readable) {
        std::fprintf(stderr, "the plug-in %s it, the facts say: %s\n", imported ? "reads" : "refuses",
                     object.problem.c_str());
        fuzz::fail("facts and plug-in disagree on an object");
    }
}

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    fuzz::set_up();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    static fuzz::InputFile file;
    file.hold(data, size);
    const restore::File stream = restore::open_regular(file.path());
    if (!stream) fuzz::fail("the memory file can't be opened");
    restore::read_head(file.path());
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (text.starts_with("FORM"))
        check_object(data, size, stream.get());
    else
        check_scene(text, stream.get());
    return 0;
}
