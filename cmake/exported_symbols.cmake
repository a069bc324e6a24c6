# Exports from a library what a list names, and nothing else.

# `list` has one demangled name on a line, as processors of 64 bits have it; on others, which
# have other types for uint64_t and size_t, everything is exported.
function(morva_export_symbols target list)
    if(NOT CMAKE_SIZEOF_VOID_P EQUAL 8)
        return()
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
    file(READ ${list} names)
    string(REGEX REPLACE "([^\n]+)\n" "    \"\\1\";\n" names "${names}")
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
    file(CONFIGURE OUTPUT ${script} @ONLY CONTENT "{
  global: extern \"C++\" {
@names@  };
  local: *;
};
")
    target_link_options(${target} PRIVATE -Wl,--version-script=${script})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
endfunction()
