# Hardening of the release build: what turns a fault of memory into an end of the program instead of a
# way in. Stack canaries, checked calls of the C library, marks for every target of an indirect jump,
# code at random addresses, tables of the loader that are read-only once it has filled them, and no
# stack that can be run. Debug and sanitizer builds have their own checks. Programs for Windows get
# random addresses and a stack that cannot be run from their linker. The marks of jumps count for the
# whole program only where the start files of the system carry them too; Debian 12's do not.

include(CheckCXXCompilerFlag)
include(CheckPIESupported)

if(NOT WIN32)
  check_pie_supported()
  check_cxx_compiler_flag(-fcf-protection KZT5CMRG_CF_PROTECTION)  # not on every processor
  set(rilascio "$<CONFIG:Release,MinSizeRel>")
  set(posizione_propria "$<NOT:$<BOOL:$<TARGET_PROPERTY:POSITION_INDEPENDENT_CODE>>>")
  target_compile_options(flags INTERFACE
    $<${rilascio}:-fstack-protector-strong>
    $<${rilascio}:-U_FORTIFY_SOURCE> $<${rilascio}:-D_FORTIFY_SOURCE=2>
    $<$<AND:${rilascio},$<BOOL:${KZT5CMRG_CF_PROTECTION}>>:-fcf-protection>
    $<$<AND:${rilascio},${posizione_propria}>:-fPIE>)
  target_link_options(flags INTERFACE
    $<${rilascio}:LINKER:-z,relro,-z,now,-z,noexecstack>
    $<$<AND:${rilascio},$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>>:-pie>)
endif()
