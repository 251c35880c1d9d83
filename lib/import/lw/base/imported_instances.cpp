#include "lib/import/lw/base/imported_instances.h"

#include "lib/import/lw/base/name_index.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

lw_instance_node* lw_instance_list = nullptr;
static lws_name_index imported_names = {};

// A list without the name is better than a read that ends: where memory is short, the name is left out.
void LWS_Add_Instance_To_Imported_List(const char* name)
{
    if (lws_find_name(&imported_names, name) >= 0) return;
    auto* const node = static_cast<lw_instance_node*>(Tv_Alloc_Memory(0, 1, sizeof(lw_instance_node)));
    if (!node) return;
    node->next = lw_instance_list;
    lw_instance_list = node;
    Import_IO_Copy_String(&node->name, name);
    if (node->name) lws_add_name(&imported_names, node->name, 0);
}

void lws_free_imported_list()
{
    lws_free_name_index(&imported_names);
    while (lw_instance_list) {
        lw_instance_node* const node = lw_instance_list;
        lw_instance_list = node->next;
        Tv_Free_Memory(node->name);
        Tv_Free_Memory(node);
    }
}
