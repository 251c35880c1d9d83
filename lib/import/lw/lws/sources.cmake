# The scene reader's files; lib/import/lw/CMakeLists.txt includes this and makes the module of them.
set(LWS_SOURCES)
