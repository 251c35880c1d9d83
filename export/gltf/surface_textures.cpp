#include "export/gltf/surface_textures.h"

namespace gltf {

struct SurfaceTextureMaker::State {
    SurfaceTextures none;
};

SurfaceTextureMaker::SurfaceTextureMaker(const tv::Scene&, const Options&, Report&) : state_(std::make_unique<State>())
{
}

SurfaceTextureMaker::~SurfaceTextureMaker() = default;

const SurfaceTextures& SurfaceTextureMaker::textures(tv::Id, const tv::TextureProjection*, bool)
{
    return state_->none;
}

std::shared_ptr<const EncodedImage> SurfaceTextureMaker::image(const std::string&)
{
    return nullptr;
}

} // namespace gltf
