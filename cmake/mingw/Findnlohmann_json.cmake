include(${CMAKE_CURRENT_LIST_DIR}/header_only.cmake)
header_only_package(nlohmann_json nlohmann_json::nlohmann_json nlohmann/json.hpp)
