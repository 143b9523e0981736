# Installs the build tree COSTRUZIONE into a prefix of its own, builds examples/host against it by the
# CMake package and by pkg-config, and runs both. Also holds the library to its one exported class.
# In: COSTRUZIONE, SORGENTI, LAVORO (emptied), COMPILATORE, OPZIONI (compiler flags), NM, READELF, PKG_CONFIG,
# RILASCIO (whether the build is hardened).

set(prefisso ${LAVORO}/prefisso)
function(Esegui)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE esito OUTPUT_VARIABLE uscita ERROR_VARIABLE errori)
  if(NOT esito EQUAL 0)
    message(FATAL_ERROR "${ARGN}: ${esito}\n${uscita}\n${errori}")
  endif()
  set(uscita "${uscita}" PARENT_SCOPE)
endfunction()

function(ControllaOspite)
  Esegui(${ARGN})
  foreach(atteso "raggiunto" "Sigma zero =  1.264 " "è stato"
          "Punto N: Est 1181.7637  Nord 1071.6780  Quota 94.2600\n$")
    if(NOT uscita MATCHES "${atteso}")
      message(FATAL_ERROR "${ARGN}: \"${atteso}\" is missing in\n${uscita}")
    endif()
  endforeach()
endfunction()

file(REMOVE_RECURSE ${LAVORO})
Esegui(${CMAKE_COMMAND} --install ${COSTRUZIONE} --prefix ${prefisso})

Esegui(${CMAKE_COMMAND} -S ${SORGENTI}/examples/host -B ${LAVORO}/ospite -G Ninja
       -DCMAKE_PREFIX_PATH=${prefisso} -DCMAKE_CXX_COMPILER=${COMPILATORE}
       -DCMAKE_CXX_FLAGS=${OPZIONI})
Esegui(${CMAKE_COMMAND} --build ${LAVORO}/ospite)
ControllaOspite(${LAVORO}/ospite/ospite)

file(GLOB_RECURSE pc ${prefisso}/*/kzt5cmrg.pc)
get_filename_component(cartella_pc ${pc} DIRECTORY)
set(ENV{PKG_CONFIG_PATH} ${cartella_pc})
Esegui(${PKG_CONFIG} --cflags --libs kzt5cmrg)
separate_arguments(opzioni UNIX_COMMAND "${OPZIONI} ${uscita}")
Esegui(${PKG_CONFIG} --variable=libdir kzt5cmrg)
string(STRIP "${uscita}" cartella_libreria)
Esegui(${COMPILATORE} -std=c++20 ${SORGENTI}/examples/host/ospite.cpp ${opzioni}
       -Wl,-rpath,${cartella_libreria} -o ${LAVORO}/ospite_pc)
ControllaOspite(${LAVORO}/ospite_pc)

Esegui(${NM} -D --defined-only -C ${cartella_libreria}/libkzt5cmrg.so)
string(REGEX MATCHALL "[^\n]+" simboli "${uscita}")
list(FILTER simboli EXCLUDE REGEX "^[0-9a-f]+ [A-Z] CalcCmpRigVelid1::|__(odr_)?asan")
if(simboli OR NOT uscita MATCHES "CalcCmpRigVelid1::Esegui\\(\\)")
  message(FATAL_ERROR "exported beside the class, or the class is missing: ${simboli}")
endif()

Esegui(${CMAKE_COMMAND} -DCARTELLA=${prefisso} -DREADELF=${READELF} -DRILASCIO=${RILASCIO}
       -P ${SORGENTI}/tests/scafo.cmake)

if(EXISTS ${prefisso}/bin/compensa)  # finds the library from where it was installed
  Esegui(${prefisso}/bin/compensa --help)
endif()
