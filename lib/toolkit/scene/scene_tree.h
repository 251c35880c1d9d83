// What hangs under what, changed.
#pragma once
#include "lib/toolkit/scene/scene_store.h"

namespace tv {

void set_object(Id instance, Id object); // no_id: an empty node
void detach(Id instance);
// Hangs an instance under a living instance or object; moves it when it hangs elsewhere. Where that would close a cycle
// or parent is no_id, it hangs it under "world" and reports ERR_SCENE_BAD_PARENT.
void attach(Id instance, Kind parent_kind, Id parent, const char* parent_name);
// True when an instance of `object`, or what hangs in or under it, would come to stand inside itself.
bool object_would_close_cycle(Id instance, Id object);

} // namespace tv
