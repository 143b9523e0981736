# The dense kernels, one file compiled once for every instruction set. Which of them runs is chosen
# when the module is loaded. The target `nuclei` carries their objects, for the module and for what
# tests and times them by themselves.
add_library(nuclei INTERFACE)

function(kzt5cmrg_oggetti nome sorgente)
  add_library(${nome} OBJECT ${sorgente})
  target_include_directories(${nome} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${nome} PRIVATE flags)
  set_target_properties(${nome} PROPERTIES
    POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_sources(nuclei INTERFACE $<TARGET_OBJECTS:${nome}>)
endfunction()

# Kernels of one instruction set, with the compiler options that ask for it.
function(kzt5cmrg_nuclei insieme)
  string(TOLOWER ${insieme} etichetta)
  kzt5cmrg_oggetti(nuclei_${etichetta} lsq/nuclei.cpp)
  target_compile_definitions(nuclei_${etichetta} PRIVATE
    KZT5CMRG_NUCLEI=kNuclei${insieme} KZT5CMRG_NOME_NUCLEI="${etichetta}")
  target_compile_options(nuclei_${etichetta} PRIVATE ${ARGN})
endfunction()

kzt5cmrg_oggetti(nuclei_scelta lsq/scelta_nuclei.cpp)
kzt5cmrg_nuclei(Portabili)
# MinGW does not align the stack for vectors wider than 16 bytes.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" AND NOT MINGW)
  kzt5cmrg_nuclei(Avx2 -mavx2 -mfma)
  kzt5cmrg_nuclei(Avx512 -mavx512f -mavx2 -mfma)
  target_compile_definitions(nuclei_scelta PRIVATE KZT5CMRG_NUCLEI_X86)
endif()
target_link_libraries(kzt5cmrg PRIVATE $<BUILD_INTERFACE:nuclei>)
