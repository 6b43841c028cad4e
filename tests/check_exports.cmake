# Compares the export table of a DLL with the names listed in a .def file.
execute_process(COMMAND ${OBJDUMP} -p ${DLL} OUTPUT_VARIABLE dump RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "objdump failed on ${DLL}")
endif()
string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table\n([^\n]+\n)+" table "${dump}")
# Rows look like "[  12] Name"; the table's own heading is not a row.
string(REGEX MATCHALL "\\[ *[0-9]+\\] [A-Za-z_][A-Za-z0-9_@]*" found "${table}")
list(TRANSFORM found REPLACE "^\\[ *[0-9]+\\] " "")
list(SORT found)

include(${CMAKE_CURRENT_LIST_DIR}/../cmake/def_names.cmake)
kodbc_read_def_names(${DEF} expected)
list(SORT expected)

if(NOT found STREQUAL expected)
  set(missing ${expected})
  list(REMOVE_ITEM missing ${found})
  set(extra ${found})
  list(REMOVE_ITEM extra ${expected})
  message(FATAL_ERROR "export table differs from kodbc.def\n  missing: ${missing}\n  unexpected: ${extra}")
endif()
list(LENGTH found n)
message(STATUS "export table: ${n} names, all undecorated and as listed")
