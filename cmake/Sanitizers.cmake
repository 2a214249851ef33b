# Sanitizers apply to the whole build (libraries, tests, fuzzers) so that an
# instrumented test never links an uninstrumented copy of the code it checks.
if(TARVIX_SANITIZE)
    message(STATUS "Tarvix: building with -fsanitize=${TARVIX_SANITIZE}")
    add_compile_options(-fsanitize=${TARVIX_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${TARVIX_SANITIZE})
endif()
