#include "export/page/viewer_page.h"

namespace page {

const std::string_view viewer_page;

} // namespace page
