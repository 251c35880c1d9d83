# The texture road of the exporter: texture coordinates, and images from the file on disk to a material's slots.
find_package(PNG REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(FFMPEG REQUIRED IMPORTED_TARGET libavformat libavcodec libswscale libavutil)

add_library(gltf_textures STATIC
  projection_uv.cpp
  surface_textures.cpp)
house_target(gltf_textures)
target_link_libraries(gltf_textures PUBLIC vc4_tv lw_platform PRIVATE PNG::PNG ${CMAKE_DL_LIBS})
