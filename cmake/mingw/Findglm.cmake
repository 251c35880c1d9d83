include(${CMAKE_CURRENT_LIST_DIR}/header_only.cmake)
header_only_package(glm glm::glm glm/glm.hpp)
