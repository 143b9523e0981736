# What the shared library shows: the class CalcCmpRigVelid1 and nothing else. Hidden visibility does
# most of it; the linker script also keeps back the templates of the standard library, which are
# marked visible whatever the compiler is told. On Windows the export marks of the class suffice.

include(CheckLinkerFlag)
set(versioni "${CMAKE_CURRENT_LIST_DIR}/simboli.map")
check_linker_flag(CXX "-Wl,--version-script=${versioni}" KZT5CMRG_SCRIPT_DI_VERSIONE)
if(KZT5CMRG_SCRIPT_DI_VERSIONE AND NOT WIN32)
  target_link_options(kzt5cmrg PRIVATE "-Wl,--version-script=${versioni}")
  set_property(TARGET kzt5cmrg APPEND PROPERTY LINK_DEPENDS "${versioni}")
endif()
