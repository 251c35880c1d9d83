// The toolkit's tokens of all the words that the plug-in sends or compares, each looked up once.
#pragma once
#include <cstdint>

// Append here; a word stands once, wherever else it is used too.
// clang-format off
#define LW_WORDS(X)                                                                                                    \
    /* kinds */                                                                                                        \
    X(object) X(instance) X(surface) X(texture)                                                                        \
    /* meshes */                                                                                                       \
    X(indexedpolygons) X(numpolygons) X(verticesperpoly) X(indiceoffset) X(clockwise) X(enabled) X(on) X(off)          \
    X(vertex) X(surfacelink) X(calcnormals) X(angle)                                                                   \
    /* surfaces */                                                                                                     \
    X(color) X(rgb) X(model) X(phong) X(shininess) X(metal) X(shadingcoeffs) X(ambient) X(diffuse) X(specular)         \
    X(luminous) X(reflect) X(ior) X(sphenvmap) X(reflectcoeff) X(texturelink) X(resetmatrix) X(rotate) X(yaxis)        \
    X(opacity) X(facecoeff) X(edgecoeff) X(edgeexp) X(edge)                                                            \
    /* layers */                                                                                                       \
    X(modulate) X(multiplier) X(colorblend) X(mix) X(luminouscolor) X(bump) X(bumpu) X(bumpv) X(faceopacity)           \
    X(invert) X(reflectopacity) X(scale) X(translate) X(worldspace) X(uscale) X(vscale)                                \
    /* textures */                                                                                                     \
    X(image) X(textureimage) X(filter) X(mipmap) X(wrapu) X(wrapv) X(procedural) X(name) X(color1) X(color2)           \
    X(param1) X(param2)                                                                                                \
    /* projections */                                                                                                  \
    X(coordsystem) X(world) X(primitive) X(origin) X(upoint) X(vpoint) X(wpoint) X(orthographic) X(spherical)          \
    X(cylindrical) X(box)                                                                                              \
    /* instances and their channels */                                                                                 \
    X(parent) X(masterobject) X(numchildren) X(numprimitives) X(localaxes) X(matrix) X(postmultiply)                   \
    X(replacechannels)                                                                                                 \
    X(moveallchannels) X(eulerrotate) X(eulerorder) X(ctrlrid) X(type) X(kftcb) X(preextraptype) X(postextraptype)     \
    X(reset) X(constant) X(cycle) X(keyframe) X(time) X(add) X(tcb) X(tension) X(cont) X(bias) X(easefrom) X(easeto)   \
    X(kfid) X(value) X(quatvalue)                                                                                      \
    /* lights */                                                                                                       \
    X(light) X(direction) X(point) X(spot) X(intensity) X(cutoff) X(delta) X(shinedir) X(shinefrom) X(shineat)         \
    X(shadowmap) X(shadowmapsize) X(useglobalvalues) X(decay)                                                          \
    /* camera */                                                                                                       \
    X(active) X(focallength) X(formmappingtype) X(type4) X(lookfrom) X(lookat) X(lookup) X(projection) X(perspective)  \
    X(window) X(resolution)                                                                                            \
    /* time line and background */                                                                                     \
    X(length) X(starttime) X(endtime) X(currtime) X(framepause) X(framestep) X(framerate) X(colorscheme) X(gradient)   \
    X(horiztop) X(horizbot) X(horizpos) X(color3) X(color4)
// clang-format on

struct lw_token_table {
#define LW_DECLARE_WORD(word) int32_t word;
    LW_WORDS(LW_DECLARE_WORD)
#undef LW_DECLARE_WORD
};

// All zero until lw_look_up_tokens(), which the run calls at its start; good for as long as the library is loaded.
extern lw_token_table lw_tokens;

// Does nothing from its second call on.
void lw_look_up_tokens();
