# 32-bit __stdcall functions are decorated in object files (_Name@N) while
# the DLL exports them undecorated. Callers compile against the decorated
# names, so the import library must map each _Name@N to the export Name.
# Reads the names of the .def file, finds their decorations in the objects,
# and writes the import library with dlltool --kill-at.
#   -DNM= -DDLLTOOL= -DDEF= -DOBJECTS=a.obj;b.obj -DOUT_DEF= -DOUT_LIB= -DDLL_NAME=
include(${CMAKE_CURRENT_LIST_DIR}/def_names.cmake)
kodbc_read_def_names(${DEF} names)

execute_process(COMMAND ${NM} -g --defined-only ${OBJECTS} OUTPUT_VARIABLE symbols RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "nm failed")
endif()

set(decorated)
foreach(name ${names})
  string(REGEX MATCH " _${name}@[0-9]+\n" found "${symbols}")
  if(found)
    string(STRIP "${found}" found)
    string(SUBSTRING "${found}" 1 -1 found)
    list(APPEND decorated "${found}")
  else()
    # cdecl or data: the plain name is what callers use.
    list(APPEND decorated "${name}")
  endif()
endforeach()
list(JOIN decorated "\n    " body)
file(WRITE ${OUT_DEF} "LIBRARY ${DLL_NAME}\nEXPORTS\n    ${body}\n")
execute_process(COMMAND ${DLLTOOL} --def ${OUT_DEF} --dllname ${DLL_NAME} --output-lib ${OUT_LIB} --kill-at
                RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "dlltool failed")
endif()
