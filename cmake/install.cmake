# Install rules of the module, the program and the documents, and the package by which a host finds
# the module: find_package(kzt5cmrg) gives kzt5cmrg::kzt5cmrg, pkg-config knows kzt5cmrg.

include(CMakePackageConfigHelpers)
set(cartella_pacchetto "${CMAKE_INSTALL_LIBDIR}/cmake/kzt5cmrg")

install(TARGETS kzt5cmrg EXPORT kzt5cmrg)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ TYPE INCLUDE FILES_MATCHING PATTERN "*.h")

install(EXPORT kzt5cmrg NAMESPACE kzt5cmrg:: FILE kzt5cmrgTargets.cmake
        DESTINATION ${cartella_pacchetto})
configure_package_config_file(cmake/kzt5cmrgConfig.cmake.in kzt5cmrgConfig.cmake
                              INSTALL_DESTINATION ${cartella_pacchetto})
write_basic_package_version_file(kzt5cmrgConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kzt5cmrgConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/kzt5cmrgConfigVersion.cmake
        DESTINATION ${cartella_pacchetto})

# The .pc file finds its prefix from the place where it lies, so that the tree can be moved.
file(RELATIVE_PATH KZT5CMRG_RADICE_DA_PC
     "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" KZT5CMRG_RADICE_DA_PC "${KZT5CMRG_RADICE_DA_PC}")
configure_file(cmake/kzt5cmrg.pc.in kzt5cmrg.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kzt5cmrg.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(TARGET compensa)
  file(RELATIVE_PATH libreria_da_programma
       "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  # The build tree is laid out like the installed one, so that the program looks for its library at the
  # same place in both: a path that CMake changes while installing ends in an empty element until then,
  # which stands for the current folder.
  set_target_properties(compensa PROPERTIES
    INSTALL_RPATH "$ORIGIN/${libreria_da_programma}" INSTALL_RPATH_USE_LINK_PATH ON
    BUILD_WITH_INSTALL_RPATH ON)
  get_target_property(cartella_programma compensa BINARY_DIR)
  set_target_properties(kzt5cmrg PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY "${cartella_programma}/${libreria_da_programma}")
  install(TARGETS compensa)
  if(TARGET manuali)
    get_target_property(cartella_manuali compensa BINARY_DIR)
    install(FILES ${cartella_manuali}/compensa.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES ${cartella_manuali}/compensa.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)
    install(FILES ${cartella_manuali}/compensa.bash RENAME compensa
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  endif()
endif()

install(FILES README.md LEGGIMI.md CHANGELOG.md TYPE DOC)
install(DIRECTORY docs/ TYPE DOC)
install(DIRECTORY examples TYPE DOC PATTERN "*.ricevuto" EXCLUDE)
