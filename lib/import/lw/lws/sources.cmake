# The scene reader's files; lib/import/lw/CMakeLists.txt includes this and makes the module of them.
set(LWS_SOURCES
  lws/aim.cpp
  lws/backdrop.cpp
  lws/camera.cpp
  lws/hierarchy.cpp
  base/imported_instances.cpp
  lws/keywords.cpp
  lws/lights.cpp
  lws/motion.cpp
  base/name_index.cpp
  lws/scene_numbers.cpp
  lws/scene_objects.cpp
  lws/scene_parameters.cpp
  lws/scene_reader.cpp
  lws/tokenizer.cpp
  lws/transforms.cpp)
