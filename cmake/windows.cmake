# On Windows a program finds its libraries beside itself: the module's and the compiler's own. The
# latter are shared, so that an exception that the module throws is freed where it was made.

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
if(MINGW)
  foreach(libreria libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${libreria}
                    OUTPUT_VARIABLE percorso OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(EXISTS "${percorso}")
      file(COPY "${percorso}" DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
      install(FILES "${percorso}" TYPE BIN)
    else()
      message(WARNING "${libreria} not found: compensa.exe needs it beside itself")
    endif()
  endforeach()
endif()
