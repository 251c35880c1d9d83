// The names of the instances that a scene's read has made. A room of its own so that mesh output needs nothing else of
// the scene reader.
#pragma once

// Notes a name, once. Called for each instance made while the scene reader is the caller of read_LWOB.
void LWS_Add_Instance_To_Imported_List(const char* name);

// Clears the list without freeing it, at the start of a read, and frees every node, at its end.
void lws_clear_imported_list();
void lws_free_imported_list();
