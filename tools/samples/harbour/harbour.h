// The objects of the harbour scenes; each is written below its directory.
#pragma once
#include <string>

namespace samples {

void write_boat(const std::string& directory);
void write_crane(const std::string& directory); // CraneBase, CraneBoom, CraneHook
void write_gull(const std::string& directory);  // GullBody, GullWing
void write_shore(const std::string& directory); // Water, Quay, Lighthouse, House, Crate, Buoy, Hills

} // namespace samples
