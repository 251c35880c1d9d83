#include "export/gltf/mesh/tessellation.h"

#include <GL/glu.h>
#include <algorithm>
#include <cmath>
#include <deque>
#include <glm/geometric.hpp>
#include <new>
#include <stdexcept>

#include "export/gltf/mesh/tangle.h"

namespace gltf {

struct Tessellator::State {
    GLUtesselator* glu = nullptr;
    std::size_t size = 0;            // corners of the polygon at work
    std::vector<glm::dvec3> points;  // moved to the origin and scaled to 1, so that far and tiny polygons work too
    std::deque<uint32_t> numbers;    // what the library is given as a vertex: addresses have to stay
    std::vector<uint32_t> triangle;  // corners of the triangle at work
    std::vector<glm::dvec2> outline; // the points as the library sees them
    Triangles* out = nullptr;
    bool failed = false, no_memory = false; // no exception may cross the library's frames
};

namespace {

template <typename S>
void on_vertex(void* vertex, void* context)
{
    S& state = *static_cast<S*>(context);
    try {
        state.triangle.push_back(*static_cast<const uint32_t*>(vertex));
        if (state.triangle.size() < 3) return;
        state.out->list.push_back({state.triangle[0], state.triangle[1], state.triangle[2]});
        state.triangle.clear();
    } catch (const std::bad_alloc&) {
        state.no_memory = true;
    }
}

template <typename S>
void on_combine(GLdouble*, void* vertices[4], GLfloat weights[4], void** result, void* context)
{
    S& state = *static_cast<S*>(context);
    try {
        Triangles::Added added;
        for (std::size_t i = 0; i < 4; ++i)
            if (vertices[i]) {
                added.from[i] = *static_cast<const uint32_t*>(vertices[i]);
                added.weight[i] = static_cast<double>(weights[i]);
            }
        state.numbers.push_back(static_cast<uint32_t>(state.size + state.out->added.size()));
        state.out->added.push_back(added);
        *result = &state.numbers.back();
    } catch (const std::bad_alloc&) {
        state.no_memory = true;
        *result = vertices[0];
    }
}

template <typename S>
void on_error(GLenum code, void* context)
{
    S& state = *static_cast<S*>(context);
    (code == GLU_OUT_OF_MEMORY ? state.no_memory : state.failed) = true;
}

// Being asked about edges keeps the library from making fans and strips: it gives triangles alone.
void on_edge_flag(GLboolean, void*) {}

using Callback = void (*)();

// Two triangles of a quad that is convex seen along its normal, or false. Of the two ways to cut it the shorter diagonal
// is taken: on bent quads it makes the flatter fold.
bool convex_quad(std::span<const glm::dvec3> points, const glm::dvec3& normal, Triangles& out)
{
    double turns[4], largest = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const glm::dvec3 a = points[(i + 1) % 4] - points[i], b = points[(i + 2) % 4] - points[(i + 1) % 4];
        turns[i] = glm::dot(glm::cross(a, b), normal);
        largest = std::max(largest, std::abs(turns[i]));
    }
    const double least = largest * 1e-6; // a corner on a straight edge is left to the library
    const bool left = std::all_of(turns, turns + 4, [&](double turn) { return turn > least; });
    const bool right = std::all_of(turns, turns + 4, [&](double turn) { return turn < -least; });
    if (!left && !right) return false;
    const glm::dvec3 d02 = points[2] - points[0], d13 = points[3] - points[1];
    const bool first = glm::dot(d02, d02) <= glm::dot(d13, d13);
    out.list = first ? std::vector<std::array<uint32_t, 3>>{{0, 1, 2}, {0, 2, 3}}
                     : std::vector<std::array<uint32_t, 3>>{{0, 1, 3}, {1, 2, 3}};
    if (right)
        for (auto& triangle : out.list) std::swap(triangle[1], triangle[2]);
    return true;
}

void fill_with_fan(std::span<const glm::dvec3> points, const glm::dvec3& normal, Triangles& out)
{
    for (uint32_t i = 1; i + 1 < points.size(); ++i) {
        const bool front = glm::dot(glm::cross(points[i] - points[0], points[i + 1] - points[0]), normal) >= 0;
        out.list.push_back({0, front ? i : i + 1, front ? i + 1 : i});
    }
}

// Seen along the longest axis of the normal, as the library sees it.
void project(std::span<const glm::dvec3> points, const glm::dvec3& normal, std::vector<glm::dvec2>& out)
{
    const glm::dvec3 size = glm::abs(normal);
    const glm::length_t axis = size.x >= size.y && size.x >= size.z ? 0 : size.y >= size.z ? 1 : 2;
    out.clear();
    for (const glm::dvec3& point : points) out.emplace_back(point[(axis + 1) % 3], point[(axis + 2) % 3]);
}

} // namespace

Tessellator::Tessellator() : state_(std::make_unique<State>())
{
    state_->glu = gluNewTess();
    if (!state_->glu) throw std::bad_alloc();
    gluTessCallback(state_->glu, GLU_TESS_VERTEX_DATA, reinterpret_cast<Callback>(&on_vertex<State>));
    gluTessCallback(state_->glu, GLU_TESS_COMBINE_DATA, reinterpret_cast<Callback>(&on_combine<State>));
    gluTessCallback(state_->glu, GLU_TESS_ERROR_DATA, reinterpret_cast<Callback>(&on_error<State>));
    gluTessCallback(state_->glu, GLU_TESS_EDGE_FLAG_DATA, reinterpret_cast<Callback>(&on_edge_flag));
    gluTessProperty(state_->glu, GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_NONZERO);
}

Tessellator::~Tessellator()
{
    gluDeleteTess(state_->glu);
}

Tessellator::Filling Tessellator::polygon(std::span<const glm::dvec3> points, const glm::dvec3& normal, Triangles& out)
{
    out.list.clear();
    out.added.clear();
    const glm::dvec3 direction =
        glm::normalize(normal / std::max({std::abs(normal.x), std::abs(normal.y), std::abs(normal.z)}));
    double size = 0;
    for (const glm::dvec3& point : points) {
        const glm::dvec3 offset = glm::abs(point - points[0]);
        size = std::max({size, offset.x, offset.y, offset.z});
    }
    if (!(size > 0)) return Filling::empty;
    State& state = *state_;
    state.points.clear();
    for (const glm::dvec3& point : points) state.points.push_back((point - points[0]) / size);
    if (points.size() == 3) {
        const glm::dvec3 own = glm::cross(state.points[1], state.points[2]);
        out.list.push_back(glm::dot(own, direction) < 0 ? std::array<uint32_t, 3>{0, 2, 1}
                                                        : std::array<uint32_t, 3>{0, 1, 2});
        return Filling::whole;
    }
    if (points.size() == 4 && convex_quad(state.points, direction, out)) return Filling::whole;
    project(state.points, direction, state.outline);
    if (too_tangled(state.outline)) {
        fill_with_fan(state.points, direction, out);
        return Filling::fan;
    }

    state.size = points.size();
    state.out = &out;
    state.failed = state.no_memory = false;
    state.triangle.clear();
    state.numbers.clear();
    for (std::size_t i = 0; i < points.size(); ++i) state.numbers.push_back(static_cast<uint32_t>(i));
    gluTessNormal(state.glu, direction.x, direction.y, direction.z);
    gluTessBeginPolygon(state.glu, &state);
    gluTessBeginContour(state.glu);
    for (std::size_t i = 0; i < points.size(); ++i) gluTessVertex(state.glu, &state.points[i].x, &state.numbers[i]);
    gluTessEndContour(state.glu);
    gluTessEndPolygon(state.glu);
    if (state.no_memory) throw std::bad_alloc();
    if (state.failed) out.list.clear();
    return out.list.empty() ? Filling::empty : Filling::whole;
}

} // namespace gltf
