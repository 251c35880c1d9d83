// Every message that is ours to word, whoever says it: the program, its exporters and what stands between. The plug-in's
// own texts pass through `reader-warning` and `reader-error`. docs/user/6-messages.md is made from here.
#pragma once
#include <iterator>
#include <span>

#include "lib/messages/row.h"

namespace messages {

using enum Level;

// ---- wrong use: the exit status is 2 -------------------------------------------------------------------------------

inline constexpr Row wrong_use_rows[] = {
    {"option-unknown", error, "no such option: {option}[; did you mean {near}?|; see --help]"},
    {"arguments-wrong", error, "{problem}; see --help"},
    {"argument-too-many", error, "'{argument}' is one argument too many; see --help"},
    {"argument-missing", error, "no {kind} given; see --help"},
    {"value-no-number", part, "'{value}' is not a number"},
    {"value-out-of-range", part, "{value} is outside {low} to {high}"},
    {"directory-wrong", error, "{option}: {path} is not a directory"},
    {"format-unknown", error, "--format takes glb, gltf or json, not '{format}'"},
    {"format-contradicts-output", error, "-o {out} and --format {format} contradict each other"},
    {"output-kind-unknown", error,
     "cannot tell the kind of output from '{out}': it ends in none of .glb, .gltf and .json (a directory ends in /)"},
    {"output-for-one-input", error, "-o {out} takes one input; give a directory (-o DIR/) for several"},
    {"output-is-terminal", error,
     "standard output is a terminal, and a .glb file isn't text; send it to a file or a pipe"},
    {"restoration-unknown", error, "--no-restore: there is no restoration {name}[; did you mean {near}?]"},
    {"range-unknown", error, "--range takes keys, not '{kind}'"},
    {"call-word-missing", error, "no WORD given; see lwimport call --help"},
    {"call-word-no-integer", error, "the word {word} takes an integer, not '{value}'"},
    {"options-verb-unknown", error,
     "no such word: options {word}[; did you mean {near}?|; see lwimport options --help]"},
    {"options-needs-key-and-value", error, "lwimport options {word} takes a KEY and a VALUE"},
    {"options-needs-key", error, "lwimport options {word} takes a KEY"},
    {"options-needs-nothing", error, "lwimport options {word} takes no further words"},
    {"options-key-unknown", error, "no such option: {key}[; did you mean {near}?|; lwimport options list shows them]"},
    {"options-flag-wrong", error, "{key} takes 1 or 0, not '{value}'"},
    {"options-angle-wrong", error, "{key} takes degrees from {low} to {high}, not '{value}'"},
    {"options-directory-wrong", error, "{key}: '{value}' is not a directory"},
    {"options-directory-too-long", error,
     "{key} takes at most {most:#} bytes, '{path}' has {bytes:#}; use --content-dir"},
    {"options-directory-unfit", error, "{key} can't hold a quotation mark or a line end; use --content-dir"},
};

// ---- inputs --------------------------------------------------------------------------------------------------------

inline constexpr Row input_rows[] = {
    {"input-missing", error, "{file} does not exist"},
    {"input-unreadable", error, "{file} cannot be read: {reason}"},
    {"input-directory", error, "{file} is a directory"},
    {"input-directory-not-asked", error, "{file} is a directory; -r converts what is in it"},
    {"input-irregular", error, "{file} is not a regular file", "Devices and pipes aren't read."},
    {"input-empty", error, "{file} is empty"},
    {"input-of-later-kind", error, "{file} is an object of another kind ({type}); only LWOB objects are read",
     "A program that reads the newer kind can save it as LWOB."},
    {"input-holds-nothing", error, "{file} says that it holds nothing (its length is 0)"},
    {"input-other-iff", error, "{file} is an IFF file of type {type}, not a Lightwave object or scene"},
    {"input-cut-off", error, "{file} is cut off: it begins like a Lightwave object, but ends in its head"},
    {"input-foreign", error, "{file} is not a Lightwave object or scene"},
    {"input-path-wrong", error, "{reason}"},
    {"directory-unlistable", error, "cannot list {directory}: {reason}"},
    {"directory-without-inputs", error, "there are no Lightwave files in {directory}",
     "Files are told by their content, not by their names."},
    {"directory-not-entered", error, "cannot enter {directory}: {reason}"},
    {"directory-not-left", warning, "cannot go back: {reason}"},
};

// ---- files that an input names -------------------------------------------------------------------------------------

inline constexpr Row named_file_rows[] = {
    {"object-missing", warning,
     "missing object {stored}, a null object takes its place[ (named {times:,} times)]\n"
     "  looked for:{places:lines}[\n    and in {more:,more place|more places} (lwimport find lists all)]",
     "Name its directory: `--content-dir` for the one that stored paths are relative to, `--search-path` for any "
     "other."},
    {"image-missing", warning,
     "missing image {stored}\n"
     "  looked for:{places:lines}[\n    and in {more:,more place|more places} (lwimport find lists all)]",
     "As for objects. The surface keeps its plain values."},
    {"image-unreadable", warning, "cannot read the image {file}: {reason}",
     "Save it as PNG under the same name: the kind is told by the content."},
    {"objects-missing", part, "{missing:,} of {all:,object|objects} missing"},
    {"images-missing", part, "{missing:,} of {all:,image|images} missing"},
    {"files-missing", warning, "{missing:parts}", "The last line of a conversion; the lines before it name each."},
};

// ---- reading -------------------------------------------------------------------------------------------------------

inline constexpr Row reading_rows[] = {
    {"reader-warning", warning, "{text}", "The reader's own words. It goes on.", true},
    {"reader-error", error, "{text}", "The reader's own words. What they are about is left out, or the reading ends.",
     true},
    {"reader-object-missing", error, "{text}", "Printed by `lwimport call`; a conversion tells `object-missing`.",
     true},
    {"reader-repeated", info, "{times:,} more times: {text}"},
    {"reader-not-shown", info, "{messages:,message|messages} not shown", "One file gets at most 100 different ones."},
    {"scene-of-later-version", warning,
     "this scene was written by version 6 or later: its motions have another layout, so that most of what it holds is "
     "lost",
     "A program that reads it can save it as version 1."},
};

// ---- a conversion and its output -----------------------------------------------------------------------------------

inline constexpr Row conversion_rows[] = {
    {"converted", info,
     "{input} -> {output}: {objects:,object|objects}, {polygons:,polygon|polygons}, {lights:,light|lights}, "
     "{seconds:.1} s"},
    {"output-left-alone", info, "{output} exists and is left alone", "`--no-clobber` asks for it."},
    {"output-over-input", error, "the result would overwrite its own input", "Name another output with `-o`."},
    {"output-taken", error, "{output} is another input's result already"},
    {"not-converted", error, "not converted (--keep-partial writes what could be read)",
     "The messages before say why. An old output stays as it was."},
    {"not-converted-strictly", error, "not converted, since --strict lets no warning and no missing file pass"},
    {"converted-partly", error, "only a part of it could be read; that part was written"},
    {"stopped", error, "stopped; nothing was written"},
    {"memory-short", error, "there isn't enough memory for it"},
    {"files-done", info,
     "{files:,file|files}: {converted:,} converted[, {left:,} left alone][, {failed:,} failed][; {missing:parts}]"},
    {"files-stopped", info,
     "{files:,file|files}: {converted:,} converted[, {left:,} left alone][, {failed:,} failed], stopped"
     "[; {missing:parts}]"},
    {"directory-not-made", error, "cannot make the directory {directory}: {reason}"},
    {"file-not-written", error, "can't write '{file}': {reason}", "An old file stays as it was."},
    {"file-not-replaced", error, "can't replace '{file}': {reason}", "The old file stays as it was."},
    {"standard-output-failed", error, "cannot write to standard output[: {reason}]"},
};

// ---- glTF ----------------------------------------------------------------------------------------------------------

inline constexpr Row restore_rows[] = {
    {"light-parents", info, "light-parents: {lights:,light hangs|lights hang} where the scene has them"},
    {"light-motions", info, "light-motions: {lights:,light moves|lights move} as in the scene"},
    {"targets", info, "targets: {things:,thing looks|things look} at a target"},
    {"camera-angles", info, "camera-angles: the camera turns by its own angles"},
    {"linear-keys", info, "linear-keys: {keys:,key is|keys are} reached on a straight line"},
    {"light-envelopes", info, "light-envelopes: {values:,value|values} of lights change over time",
     "By KHR_animation_pointer; a viewer without it shows the first frame's value."},
    {"dark-lights", info, "dark-lights: {lights:,light|lights} that never shine left out",
     "Lens flares of the time were often lights of intensity 0."},
    {"zoom", info, "zoom: the camera's angle of view changes over time"},
    {"ambient", info, "ambient: surfaces send the scene's ambient light"},
    {"dissolves", info, "dissolves: {objects:,object is|objects are} dissolved as in the scene"},
    {"unseen", info, "unseen: {objects:,object|objects} that the camera doesn't see not drawn"},
    {"double-sided", info, "double-sided: {surfaces:,surface is|surfaces are} seen from both sides"},
    {"light-range", info, "light-range: {lights:,light reaches|lights reach} as far as in the scene"},
    {"area-lights", info,
     "area-lights: {lights:,linear or area light is a point light|linear or area lights are point "
     "lights}"},
    {"morphs", info, "morphs: {objects:,object changes|objects change} into another"},
    {"left-out", info, "left out here: {losses:parts}"},
    {"lost-lens-flares", part, "{flares:,lens flare|lens flares}"},
    {"lost-fog", part, "fog"},
    {"lost-negative-lights", part, "{lights:,light that darkens|lights that darken}"},
    {"lost-displacements", part, "{maps:,displacement map|displacement maps}"},
    {"lost-clip-maps", part, "{maps:,clip map|clip maps}"},
    {"lost-bones", part, "{bones:,bone|bones}"},
    {"lost-path-alignments", part, "{paths:,alignment to a path|alignments to a path}"},
    {"lost-procedural-textures", part, "{textures:,procedural texture|procedural textures}"},
    {"lost-motion-blur", part, "motion blur"},
    {"lost-depth-of-field", part, "depth of field"},
    {"objects-unmatched", warning,
     "what was read isn't what the scene lists one for one, so that nothing is put back on objects",
     "Parents, targets, dissolves and the like are as the plug-in read them."},
    {"lights-unmatched", warning,
     "the lights that were read aren't those of the scene one for one, so that nothing is put back on them"},
    {"parents-wrong", warning, "{parents:,parent|parents} that the scene doesn't have: under the world"},
    {"targets-wrong", warning, "{targets:,target|targets} that the scene doesn't have: left out"},
    {"targets-circular", warning, "{targets:,target|targets} that depend on themselves: left out"},
    {"morphs-unfit", warning, "{morphs:,morph|morphs} between objects of different points: left out"},
};

inline constexpr Row gltf_rows[] = {
    {"polygons-left-out", warning,
     "{count:#polygon|polygons} left out: {reasons:parts} (the first in object '{object}')"},
    {"polygons-of-few-points", part, "{count:#} with fewer than three distinct points"},
    {"polygons-of-no-points", part, "{count:#} with points that don't exist"},
    {"polygons-not-finite", part, "{count:#} with coordinates beyond all bounds"},
    {"polygons-of-no-area", part, "{count:#} without area"},
    {"polygons-tangled", warning,
     "{count:#polygon|polygons} filled roughly, as the edges cross each other too often (the first in object "
     "'{object}')"},
    {"instances-not-finite", warning,
     "{count:#instance|instances} placed by a matrix that isn't finite: put at the origin"},
    {"lights-negative", warning,
     "{count:#light|lights} of negative intensity: glTF has no light that darkens, written as 0"},
    {"backdrop-empty", info, "the scene has no backdrop that a dome could show"},
    {"keys-not-finite", warning, "{count:#key|keys} left out: not a number"},
    {"channels-cut", warning,
     "{count:#channel|channels} with too many repetitions for the time line: not filled to its end"},
    {"rotations-coarse", warning,
     "{count:#rotation|rotations} sampled less than once a frame: the time line is too long"},
    {"texture-without-picture", info,
     "surface '{surface}': texture '{texture}' has no picture in this scene and is left out"},
    {"procedural-unknown", info,
     "surface '{surface}': procedural texture '{texture}' has no counterpart and is left out",
     "Bake it into an image in a program that has it."},
    {"surfaces-without-ambient", info,
     "{count:#surface|surfaces} without ambient light: a picture says what they send"},
    {"layers-too-many", warning,
     "surface '{surface}' has more than {most:#} texture layers; the first {shown:#} are shown"},
    {"textures-coarse", warning,
     "there are so many mixed textures that further ones are made no larger than {side:#} pixels"},
    {"textures-without-projection", info,
     "surface '{surface}' has textures, but is on an instance without a projection for them; they are left out there"},
    {"projections-too-many", warning,
     "surface '{surface}' has procedural textures on more than {most:#} projections; the further ones show the first "
     "one's pictures"},
    {"image-sequence", info, "image '{image}' is a sequence of pictures; {file} stands for all of them"},
    {"image-by-another-name", info, "image '{image}' isn't there by that name; {file} is taken"},
    {"image-gone", warning, "{file}: {reason}", "It could be read at first, and not when it was needed again."},
    {"image-not-opened", part, "it can't be opened[: {reason}]"},
    {"image-too-large", part, "it is larger than 1 GiB"},
    {"image-cut-off", part, "it can't be read to its end"},
    {"nodes-too-many", error,
     "the scene has more than {most:#} nodes: instances of objects that hold other instances multiply"},
    {"vertices-too-many", error, "object '{object}' has more vertices than a glTF mesh can hold; split it"},
    {"data-too-large", error,
     "the scene needs more than 4 GiB of data, which a glTF binary file can't hold; convert its objects one by one"},
    {"glb-too-large", error,
     "the file would be larger than 4 GiB, which a glTF binary file can't be; write .gltf, or convert the scene's "
     "objects one by one"},
    {"scale-wrong", error, "the scale has to be a number above 0"},
    {"ending-unknown", error, "can't tell what to write from the name '{file}': it has to end in .glb or .gltf"},
    {"kind-unknown", error, "unknown format '{format}': there are glb and gltf"},
};

// ---- pages ---------------------------------------------------------------------------------------------------------

inline constexpr Row page_rows[] = {
    {"page-too-large", error, "the scene takes more than 1 GiB, which browsers don't open in a page; write .glb"},
};

// ---- the program itself --------------------------------------------------------------------------------------------

inline constexpr Row program_rows[] = {
    {"plugin-place-unknown", error, "cannot tell where this program stands"},
    {"plugin-not-loaded", error, "cannot load the plug-in: {reason}",
     "It stands beside the program's other libraries, as it was installed."},
    {"plugin-foreign", error, "{file} is not an import plug-in: it has no {function}"},
    {"trace-unwritable", error, "cannot write the trace {file}: {reason}"},
    {"dialog-impossible", error, "{obstacle}; lwimport options list, get, set and reset do without"},
    {"options-written", info, "options written to {file}"},
    {"options-not-written", error, "cannot write the options: {reason}"},
    {"options-not-removed", error, "cannot remove {file}: {reason}"},
    {"options-without-place", error, "there is no place for an options file: {reason}"},
    {"unexpected", error, "{reason}"},
};

// ---- all of them ---------------------------------------------------------------------------------------------------

struct Section {
    std::string_view title;
    std::span<const Row> rows;
};
inline constexpr Section sections[] = {
    {"Wrong use", wrong_use_rows},
    {"Inputs", input_rows},
    {"Files that an input names", named_file_rows},
    {"Reading", reading_rows},
    {"Conversion and output", conversion_rows},
    {"What is put back", restore_rows},
    {"glTF", gltf_rows},
    {"Pages", page_rows},
    {"The program", program_rows},
};

constexpr const Row& row_of(std::string_view code)
{
    for (const Section& section : sections)
        for (const Row& row : section.rows)
            if (row.code == code) return row;
    throw "no such code in the table of messages";
}

constexpr bool is_sound()
{
    for (const Section& section : sections)
        for (const Row& row : section.rows)
            if (!is_well_formed(row.text) || &row_of(row.code) != &row) return false;
    return true;
}
static_assert(is_sound(), "a text isn't well-formed, or a code stands twice");

} // namespace messages
