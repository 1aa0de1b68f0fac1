# Removes the files that the last "cmake --install" of this build installed. Then removes the
# folders that are empty, except for folders of the system.

# Not as a list, because a name may contain brackets or semicolons.
file(READ "${CMAKE_CURRENT_LIST_DIR}/install_manifest.txt" files)
while(files MATCHES "^([^\n]+)\n?(.*)$")
  set(file "$ENV{DESTDIR}${CMAKE_MATCH_1}")
  set(files "${CMAKE_MATCH_2}")
  file(REMOVE "${file}")
  if(EXISTS "${file}")
    message(SEND_ERROR "${file} could not be removed.")
  endif()
  cmake_path(GET file PARENT_PATH folder)
  set(left 0)
  while(left EQUAL 0 AND NOT folder MATCHES "/(bin|etc|lib|man|share)$")
    execute_process(COMMAND rmdir "${folder}" RESULT_VARIABLE left ERROR_QUIET)
    cmake_path(GET folder PARENT_PATH folder)
  endwhile()
endwhile()
