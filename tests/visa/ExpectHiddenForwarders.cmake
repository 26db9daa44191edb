# SPDX-License-Identifier: MIT
# Fails when a library that PROGRAM loads could find PROGRAM's own VISA calls.
#   cmake -DPROGRAM=... -DNM=... -DEXPORTS=-D -P ExpectHiddenForwarders.cmake
foreach(options IN ITEMS "" "${EXPORTS}")
    execute_process(COMMAND ${NM} ${options} ${PROGRAM}
        OUTPUT_VARIABLE symbols ERROR_VARIABLE error RESULT_VARIABLE result)
    if(result)
        message(FATAL_ERROR "${NM} ${options} ${PROGRAM}: ${error}")
    endif()
    foreach(call IN ITEMS viOpenDefaultRM viSetAttribute viFindRsrc viFindNext viParseRsrc viClose)
        string(REGEX MATCH "[^\n]* _?${call}\n" line "${symbols}")
        if(options STREQUAL "" AND line STREQUAL "")
            message(FATAL_ERROR "${PROGRAM} has no ${call}: nothing is tested")
        elseif(NOT options STREQUAL "" AND NOT line STREQUAL "")
            message(FATAL_ERROR "${PROGRAM} exports ${line}")
        endif()
    endforeach()
endforeach()
