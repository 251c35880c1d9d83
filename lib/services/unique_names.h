// Names, each unique in its kind, in constant time however many things bear one name.
#pragma once

namespace services {

void forget_names(); // what was noted, and the translations

} // namespace services
