# Every target of the project gets the same warning set through this function,
# so a new library cannot silently build with fewer checks than the others.
option(TARVIX_WARNINGS_AS_ERRORS "Treat compiler warnings as errors (every preset turns it on)" OFF)

function(tarvix_set_warnings target)
    if(MSVC)
        target_compile_options(${target} PRIVATE /W4 /permissive-)
    else()
        target_compile_options(${target} PRIVATE
            -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
            -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
    endif()
    if(TARVIX_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE $<IF:$<BOOL:${MSVC}>,/WX,-Werror>)
    endif()
endfunction()
