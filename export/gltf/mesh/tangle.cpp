#include "export/gltf/mesh/tangle.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace gltf {

namespace {

struct Edge {
    glm::dvec2 from, to;
    double left, right, bottom, top;
    std::size_t number;
};

double side(const Edge& edge, const glm::dvec2& point)
{
    const glm::dvec2 along = edge.to - edge.from, off = point - edge.from;
    return along.x * off.y - along.y * off.x;
}

// They have a point in common.
bool meet(const Edge& a, const Edge& b)
{
    return a.bottom <= b.top && b.bottom <= a.top && side(a, b.from) * side(a, b.to) <= 0 &&
           side(b, a.from) * side(b, a.to) <= 0;
}

std::vector<Edge> edges_from_the_left(std::span<const glm::dvec2> outline)
{
    std::vector<Edge> edges;
    edges.reserve(outline.size());
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const glm::dvec2 a = outline[i], b = outline[i + 1 == outline.size() ? 0 : i + 1];
        edges.push_back({a, b, std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y), i});
    }
    std::sort(edges.begin(), edges.end(), [](const Edge& a, const Edge& b) { return a.left < b.left; });
    return edges;
}

} // namespace

bool too_tangled(std::span<const glm::dvec2> outline)
{
    const std::size_t count = outline.size();
    if (count <= 8) return false;
    // A meeting splits edges and makes the library walk round what they bound, all corners in the worst case. Where an
    // edge begins that continues none, it looks through all that are open.
    const std::size_t most_meetings = std::min(2 * count + 16, 1'000'000 / count);
    const std::size_t most_looks = 512 * count, most_tests = 2048 * count;
    std::size_t meetings = 0, looks = 0, tests = 0;
    std::vector<Edge> open; // those that a line across x meets now
    for (const Edge& edge : edges_from_the_left(outline)) {
        const std::size_t before = edge.number == 0 ? count - 1 : edge.number - 1;
        if (outline[edge.number].x == edge.left && outline[before].x >= edge.left) looks += open.size();
        for (std::size_t i = 0; i < open.size();) {
            if (open[i].right < edge.left) {
                open[i] = open.back();
                open.pop_back();
                continue;
            }
            const std::size_t apart = std::max(open[i].number, edge.number) - std::min(open[i].number, edge.number);
            if (apart != 1 && apart != count - 1 && meet(open[i], edge)) ++meetings;
            ++tests;
            ++i;
        }
        if (meetings > most_meetings || tests > most_tests || looks > most_looks) return true;
        open.push_back(edge);
    }
    return false;
}

} // namespace gltf
