# The texture road of the exporter: texture coordinates, and images from the file on disk to a material's slots.
find_package(ZLIB REQUIRED)
if(WIN32)
  find_package(stb REQUIRED)
  set(image_sources image/image_library_stb.cpp image/image_png_zlib.cpp)
  set(image_libraries stb::stb)
else()
  find_package(PNG REQUIRED)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(FFMPEG REQUIRED IMPORTED_TARGET libavformat libavcodec libswscale libavutil)
  set(image_sources image/image_library.cpp image/image_png.cpp)
  set(image_libraries PNG::PNG)
endif()

add_library(gltf_textures STATIC
  image/image_header.cpp
  image/image_keep.cpp
  ${image_sources}
  image/image_pixels.cpp
  image/image_search.cpp
  image/image_store.cpp
  material/layer_compose.cpp
  material/layer_normal.cpp
  material/layer_plan.cpp
  material/layer_procedural.cpp
  material/layer_recipe.cpp
  material/projection_uv.cpp
  material/surface_textures.cpp)
house_target(gltf_textures)
target_link_libraries(gltf_textures PUBLIC vc4_tv lw_platform PRIVATE ${image_libraries} ZLIB::ZLIB)

if(NOT WIN32)
  # Loaded by name when the first image is needed, and never linked: FFmpeg's libraries take longer to load than a small
  # scene takes to convert.
  add_library(lw_image_decoder MODULE
    image/image_decoder.cpp
    image/image_header.cpp
    image/image_ilbm.cpp)
  house_target(lw_image_decoder)
  target_link_libraries(lw_image_decoder PRIVATE PkgConfig::FFMPEG)
  set_target_properties(lw_image_decoder PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  add_dependencies(gltf_textures lw_image_decoder)
endif()
