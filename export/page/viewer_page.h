// The viewer's page, with marks where a scene's own parts go: @@title@@, @@report@@, @@glb@@, each once, in this order.
#pragma once
#include <string_view>

namespace page {

extern const std::string_view viewer_page; // empty in a build without viewer

} // namespace page
