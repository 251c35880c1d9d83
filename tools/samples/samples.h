// The samples by subject. Each writes below `directory`, which ends in no separator; directories exist already.
#pragma once
#include <string>

namespace samples {

void write_goblet(const std::string& directory);          // objects/
void write_letters(const std::string& directory);         // objects/
void write_every_sub_chunk(const std::string& directory); // objects/
void write_procedurals(const std::string& directory);     // objects/, objects/Images/
void write_hostile_objects(const std::string& directory); // hostile/
void write_hostile_scenes(const std::string& directory);  // hostile/
void write_projections(const std::string& directory);     // projections/, projections/Images/
void write_harbour_objects(const std::string& directory); // harbour/Objects/
void write_harbour_images(const std::string& directory);  // harbour/Images/
void write_harbour_scenes(const std::string& directory);  // harbour/, harbour/Scenes/

} // namespace samples
