# SPDX-License-Identifier: MIT
# An independent client, PyVISA, uses the library by its path. Without PyVISA the test fails and says
# what to install. tests/visa/ has found its Python.

set(pyvisa_environment "")
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=(address|thread)")
    if(APPLE)
        message(STATUS "No PyVISA test: macOS strips DYLD_INSERT_LIBRARIES from what starts "
            "Python, so a library built with a sanitizer cannot be loaded there")
        return()
    endif()
    # Python itself is built without sanitizer, so the runtime that the library needs has to be in
    # the process before it.
    string(SUBSTRING ${CMAKE_MATCH_1} 0 1 letter)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        set(runtime lib${letter}san.so)
    else()
        set(runtime libclang_rt.${letter}san-${CMAKE_SYSTEM_PROCESSOR}.so)
    endif()
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${runtime}
        OUTPUT_VARIABLE runtime_path OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT EXISTS "${runtime_path}")
        message(FATAL_ERROR "${CMAKE_CXX_COMPILER} has no ${runtime} for the PyVISA test")
    endif()
    # Python keeps memory to its end: leaks are looked for in the library's other tests.
    # umockdev-run preloads a library of its own before the runtime.
    set(pyvisa_environment
        "LD_PRELOAD=${runtime_path};ASAN_OPTIONS=detect_leaks=0:verify_asan_link_order=0")
endif()
# For other tests in which Python loads a library of ours.
set(QVVISA_PYTHON_ENVIRONMENT "${pyvisa_environment}" PARENT_SCOPE)

add_test(NAME simulator.pyvisa
    COMMAND ${QVVISA_PYVISA_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/pyvisa_client.py
        $<TARGET_FILE:qvvisa_simulator>)
set_tests_properties(simulator.pyvisa PROPERTIES TIMEOUT 120
    ENVIRONMENT "${pyvisa_environment}")
