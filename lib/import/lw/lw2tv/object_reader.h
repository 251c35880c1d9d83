// Reads one Lightwave object file and builds it in the toolkit.
#pragma once
#include <cstdint>
#include <cstdio>

extern int32_t total_file_length; // bytes, of the file being read; set at the start of each read

// fp                    the open file; lw_infile must be the same stream. It stays open. Null gives 1
// filename              lower-cased in place; names the mesh and stands in messages
// read_form_id          1: fp stands at the start. 0: its first four bytes have been read and found to be "FORM"
// instance_name_out, object_name_out   null, or buffers of 256; written only when a mesh was built
// parent_name           "world", or the name of an object that the result hangs under
// add_to_imported_list  not 0: LWS_Add_Instance_To_Imported_List hears of each instance made
// 0 on success, also when there is nothing to build; 1 on failure. The read buffer is released in either case.
int16_t read_LWOB(std::FILE* fp, char* filename, int16_t read_form_id, char* instance_name_out, char* object_name_out,
                  const char* parent_name, int16_t add_to_imported_list);

// Frees what a fatal exit has left of a read.
void lw_release_object_data();
