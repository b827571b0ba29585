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
