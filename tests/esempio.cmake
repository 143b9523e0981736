# Holds the report that stands beside an example to what the program writes today; a difference leaves
# the received report beside it.
# In: COMPENSA, RETE (the network file).

string(REGEX REPLACE "\\.toml$" ".rapporto.txt" approvato ${RETE})
set(ricevuto ${approvato}.ricevuto)
execute_process(COMMAND ${COMPENSA} ${RETE} -o ${ricevuto}
                RESULT_VARIABLE esito OUTPUT_VARIABLE uscita ERROR_VARIABLE errori)
if(NOT esito EQUAL 0)
  message(FATAL_ERROR "${RETE}: ${esito}\n${uscita}${errori}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${approvato} ${ricevuto}
                RESULT_VARIABLE esito)
if(NOT esito EQUAL 0)
  message(FATAL_ERROR "${ricevuto} is not what ${approvato} says")
endif()
file(REMOVE ${ricevuto})
