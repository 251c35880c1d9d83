// The time line of a scene.
#pragma once

// Closing step of a read that ended well: the toolkit's time line grows to hold the scene's, where something is
// animated and animation is imported.
void lw_update_time_line();
