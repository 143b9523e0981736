# What the program takes from others: nlohmann json, headers alone; pugixml and
# SQLite, libraries, for one file format each.

if(NOT CMAKE_CROSSCOMPILING)
  find_package(nlohmann_json REQUIRED)
else()
  # The headers are those of this machine. They are linked into a folder of their own: beside them
  # lie the headers of its system, which are not those of the target's.
  set(KZT5CMRG_INTESTAZIONI /usr/include CACHE PATH "Where the folder nlohmann is")
  set(intestazioni ${PROJECT_BINARY_DIR}/intestazioni)
  if(NOT IS_DIRECTORY ${KZT5CMRG_INTESTAZIONI}/nlohmann)
    message(FATAL_ERROR "${KZT5CMRG_INTESTAZIONI}/nlohmann not found: install nlohmann-json3-dev, or "
                        "set KZT5CMRG_INTESTAZIONI")
  endif()
  file(MAKE_DIRECTORY ${intestazioni})
  file(CREATE_LINK ${KZT5CMRG_INTESTAZIONI}/nlohmann ${intestazioni}/nlohmann SYMBOLIC COPY_ON_ERROR)
  add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
  target_include_directories(nlohmann_json::nlohmann_json INTERFACE ${intestazioni})
endif()

if(KZT5CMRG_GKF)
  find_package(pugixml REQUIRED)
endif()
if(KZT5CMRG_GEOPACKAGE)
  find_package(SQLite3 REQUIRED)
endif()
