# The build puts an installation tree into stage/, so that the loaders find everything exactly as installed.
set(QUILLON_STAGE ${CMAKE_BINARY_DIR}/stage)

# stage_target(TARGET FOLDER): TARGET is built into FOLDER of the installation tree.
function(stage_target target folder)
    set_target_properties(${target} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY "${QUILLON_STAGE}/${folder}"
        RUNTIME_OUTPUT_DIRECTORY "${QUILLON_STAGE}/${folder}")
endfunction()

# exported_library(TARGET EXPORTS): TARGET exports what the version script EXPORTS names, and its calls of its own
# functions stay inside it: the applet and the runtime libraries export the same names.
function(exported_library target exports)
    target_link_options(${target} PRIVATE -Wl,-Bsymbolic-functions -Wl,--no-undefined
        -Wl,--version-script=${exports})
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${exports})
endfunction()

# optimized_whole(TARGET OBJECTS...): in a release build TARGET is optimized across the sources of the object libraries
# OBJECTS, for a call of a host passes through several small ones. What else links them, the unit tests, does without.
function(optimized_whole target)
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_BUILD_TYPE STREQUAL Release)
        set_target_properties(${target} PROPERTIES QUILLON_WHOLE ON)
        foreach(objects IN LISTS ARGN)
            target_compile_options(${objects} PRIVATE -flto=auto -ffat-lto-objects)
            target_link_options(${objects} INTERFACE
                $<IF:$<BOOL:$<TARGET_PROPERTY:QUILLON_WHOLE>>,-flto=auto,-fno-lto>)
        endforeach()
    endif()
endfunction()
