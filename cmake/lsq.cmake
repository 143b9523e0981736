# The engine of the least squares, which knows no records: sparse system, its ordering and fronts, and
# the dense kernels. One set of objects serves the module, the program and what tests and times them.
# The kernels are one file compiled once for every instruction set; which of them runs is chosen when
# the objects are loaded.
add_library(lsq INTERFACE)

# Objects that a target carries to whoever links it: their name, the target, sources.
function(kzt5cmrg_oggetti nome per)
  add_library(${nome} OBJECT ${ARGN})
  target_include_directories(${nome} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
  target_link_libraries(${nome} PRIVATE flags)
  set_target_properties(${nome} PROPERTIES
    POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_sources(${per} INTERFACE $<TARGET_OBJECTS:${nome}>)
endfunction()

# Kernels of one instruction set, with the compiler options that ask for it.
function(kzt5cmrg_nuclei insieme)
  string(TOLOWER ${insieme} etichetta)
  kzt5cmrg_oggetti(nuclei_${etichetta} lsq lsq/nuclei.cpp)
  target_compile_definitions(nuclei_${etichetta} PRIVATE
    KZT5CMRG_NUCLEI=kNuclei${insieme} KZT5CMRG_NOME_NUCLEI="${etichetta}")
  target_compile_options(nuclei_${etichetta} PRIVATE ${ARGN})
endfunction()

kzt5cmrg_oggetti(lsq_oggetti lsq
  lsq/fronti.cpp lsq/ordinamento.cpp lsq/scelta_nuclei.cpp lsq/sparso.cpp lsq/sparso_analisi.cpp)
kzt5cmrg_nuclei(Portabili)
# MinGW does not align the stack for vectors wider than 16 bytes.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" AND NOT MINGW)
  kzt5cmrg_nuclei(Avx2 -mavx2 -mfma)
  kzt5cmrg_nuclei(Avx512 -mavx512f -mavx2 -mfma)
  target_compile_definitions(lsq_oggetti PRIVATE KZT5CMRG_NUCLEI_X86)
endif()

# Which records take part: the module and the program ask the same functions.
add_library(records INTERFACE)
kzt5cmrg_oggetti(records_oggetti records records/selezione.cpp)
