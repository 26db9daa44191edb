# SPDX-License-Identifier: MIT
# Fails unless LIBRARY exports calls of the VISA interface and nothing else.
#   cmake -DLIBRARY=... -DNM=nm -DOPTIONS=-D -P ExpectExports.cmake
execute_process(COMMAND ${NM} ${OPTIONS} ${LIBRARY}
    OUTPUT_VARIABLE symbols ERROR_VARIABLE error RESULT_VARIABLE result)
if(result)
    message(FATAL_ERROR "${NM} ${OPTIONS} ${LIBRARY}: ${error}")
endif()
string(REGEX REPLACE "[^\n]* T _?vi[A-Z][A-Za-z]+\n" "" others "${symbols}")
if(NOT others STREQUAL "")
    message(FATAL_ERROR "${LIBRARY} exports also:\n${others}")
elseif(NOT symbols MATCHES " _?viFindRsrc\n")
    message(FATAL_ERROR "${LIBRARY} does not export viFindRsrc: nothing was tested")
endif()
