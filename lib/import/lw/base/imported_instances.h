// The names of the instances that a scene's read has made. A room of its own so that mesh output needs nothing else of
// the scene reader.
#pragma once

// One name; the list stands newest first, without doubles.
struct lw_instance_node {
    char* name; // owned
    lw_instance_node* next;
};

// Made by a read and freed at its end. Nothing else reads it.
extern lw_instance_node* lw_instance_list;

// Notes a name, once. Called for each instance made while the scene reader is the caller of read_LWOB.
void LWS_Add_Instance_To_Imported_List(const char* name);

// Frees every node with its name.
void lws_free_imported_list();
