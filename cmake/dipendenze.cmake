# What the program takes from others: toml++ and nlohmann json, headers alone; pugixml and
# SQLite, libraries, for one file format each.

if(NOT CMAKE_CROSSCOMPILING)
  find_path(TOMLPLUSPLUS_INCLUDE_DIR toml++/toml.h)
  if(NOT TOMLPLUSPLUS_INCLUDE_DIR)
    message(FATAL_ERROR "toml++ not found: install libtomlplusplus-dev, or set TOMLPLUSPLUS_INCLUDE_DIR")
  endif()
  find_package(nlohmann_json REQUIRED)
else()
  # The headers are those of this machine. They are linked into a folder of their own: beside them
  # lie the headers of its system, which are not those of the target's.
  set(KZT5CMRG_INTESTAZIONI /usr/include CACHE PATH "Where the folders nlohmann and toml++ are")
  set(TOMLPLUSPLUS_INCLUDE_DIR ${PROJECT_BINARY_DIR}/intestazioni)
  file(MAKE_DIRECTORY ${TOMLPLUSPLUS_INCLUDE_DIR})
  foreach(cartella nlohmann toml++)
    if(NOT IS_DIRECTORY ${KZT5CMRG_INTESTAZIONI}/${cartella})
      message(FATAL_ERROR "${KZT5CMRG_INTESTAZIONI}/${cartella} not found: install "
                          "nlohmann-json3-dev and libtomlplusplus-dev, or set KZT5CMRG_INTESTAZIONI")
    endif()
    file(CREATE_LINK ${KZT5CMRG_INTESTAZIONI}/${cartella} ${TOMLPLUSPLUS_INCLUDE_DIR}/${cartella}
         SYMBOLIC COPY_ON_ERROR)
  endforeach()
  add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
  target_include_directories(nlohmann_json::nlohmann_json INTERFACE ${TOMLPLUSPLUS_INCLUDE_DIR})
endif()

if(KZT5CMRG_GKF)
  find_package(pugixml REQUIRED)
endif()
if(KZT5CMRG_GEOPACKAGE)
  find_package(SQLite3 REQUIRED)
endif()
