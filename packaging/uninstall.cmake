# Removes the files that the last "cmake --install" of this build installed. Then removes the
# folders that are empty, except for folders of the system.

file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/install_manifest.txt files)
foreach(file IN LISTS files)
  set(file $ENV{DESTDIR}${file})
  file(REMOVE ${file})
  cmake_path(GET file PARENT_PATH folder)
  file(GLOB left ${folder}/*)
  while(NOT left AND NOT folder MATCHES "/(bin|etc|lib|man|share)$")
    file(REMOVE_RECURSE ${folder})
    cmake_path(GET folder PARENT_PATH folder)
    file(GLOB left ${folder}/*)
  endwhile()
endforeach()
