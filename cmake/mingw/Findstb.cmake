include(${CMAKE_CURRENT_LIST_DIR}/header_only.cmake)
header_only_package(stb stb::stb stb/stb_image.h)
