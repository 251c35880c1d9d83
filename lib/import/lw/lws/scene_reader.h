// The scene reader: one pass over a Lightwave scene file, keyword by keyword, and the steps that close it.
#pragma once
#include <cstdint>
#include <cstdio>

// Reads the scene that stands open in `fp`, at its first byte, into the toolkit. `file_name` names the import's root
// and stands in messages. 1 on success, 0 on failure; what the pass has built by then stays in the toolkit. Doesn't
// close fp.
int16_t LW_Read_Scene_File(std::FILE* fp, const char* file_name);

// Gives back what a read still holds that a level 5 report left by the non-local exit; nothing to do after any other
// end. The run calls it after such an exit, and the next read does at its start.
void lws_release_scene();
