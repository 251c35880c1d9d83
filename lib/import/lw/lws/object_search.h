// Where a scene's object file may be. The scene stores the path that it had on the machine that wrote the scene:
// "Toys:Objects/Plane.lwo", "C:\OBJECTS\X.LWO", "Objects\Gate".
#pragma once
#include <cstdint>
#include <cstdio>

// Opens the first file that is there: by the last elements of the stored path, from one of them to `tries`; below the
// content directory; from the root; by the toolkit's search path. Null when there is none. *candidate, null or owned,
// becomes the path that the last of the tries by elements looked for.
std::FILE* lw_open_object_file(const char* stored_path, int16_t tries, char** candidate);
