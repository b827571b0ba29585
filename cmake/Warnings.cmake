# Warnings are errors, with g++ and with clang.
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    # g++ does not see member functions and templates that nobody uses.
    add_compile_options(-Wdocumentation "$<$<COMPILE_LANGUAGE:CXX>:-Wunused-member-function;-Wunused-template>")
else()
    # Objects with vague linkage stay private to each copy of a library.
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fno-gnu-unique>)
    # g++ 12 sees overlapping memory inside its own "text" + std::string; other versions do not.
    if(CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12 AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
    endif()
endif()
