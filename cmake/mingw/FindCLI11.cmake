include(${CMAKE_CURRENT_LIST_DIR}/header_only.cmake)
header_only_package(CLI11 CLI11::CLI11 CLI/CLI.hpp)
