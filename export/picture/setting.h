// One picture of a model, made ready: the moment, the view, the light, what stands behind.
#pragma once
#include <span>

#include "export/picture/picture.h"
#include "export/picture/raster/painter.h"

namespace picture {

class Setting {
public:
    // Borrows the model. A view from outside fits all of `moments` (seconds, at least one); the first is set up.
    // Throws std::runtime_error where the request asks for what can't be.
    Setting(const Model& model, const Request& request, std::span<const double> moments);

    // Another moment of the same: the scene's camera and lights move on; size, kind of view and lamp stay.
    void move_to(double seconds);

    const Outcome& outcome() const { return outcome_; }
    Painter painter() const { return Painter(stage_, view_, lighting_, frame_); } // borrows this
    bool transparent() const { return !frame_.behind; }

private:
    void place_view(const Pose& pose, View view, std::span<const double> moments);
    void place_backdrop(const Background& background);
    void light(Lamp lamp);

    const Model& model_;
    Stage stage_;
    Viewpoint view_;
    Lighting lighting_;
    Frame frame_;
    Outcome outcome_;
};

} // namespace picture
