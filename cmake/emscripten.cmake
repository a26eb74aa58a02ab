# Settings of the WebAssembly build (emcmake cmake). Debian's emscripten runs
# its JavaScript optimiser with the machine's Node, which finds acorn only in
# Debian's own module folder; the link steps get that folder on NODE_PATH.
if(EXISTS /usr/share/nodejs/acorn AND NOT "$ENV{NODE_PATH}" MATCHES "/usr/share/nodejs")
  set(MOLO_NODE_PATH "/usr/share/nodejs")
  if(DEFINED ENV{NODE_PATH} AND NOT "$ENV{NODE_PATH}" STREQUAL "")
    set(MOLO_NODE_PATH "$ENV{NODE_PATH}:${MOLO_NODE_PATH}")
  endif()
  set(CMAKE_C_LINKER_LAUNCHER ${CMAKE_COMMAND} -E env NODE_PATH=${MOLO_NODE_PATH})
  set(CMAKE_CXX_LINKER_LAUNCHER ${CMAKE_COMMAND} -E env NODE_PATH=${MOLO_NODE_PATH})
endif()
