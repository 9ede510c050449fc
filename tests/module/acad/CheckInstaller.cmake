# Fails unless the module carries the colour translator and the initializer that installs it at
# load: the linker drops unreferenced objects of static libraries, and nothing in the module
# calls the translator yet.
find_program(NM nm REQUIRED)
execute_process(COMMAND ${NM} -C ${MODULE} OUTPUT_VARIABLE out RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "nm failed on ${MODULE}")
endif()
foreach(symbol "kdAcadPlatformColorInstalled" "vtable for CGrAcadPlatformColor" "CGrAcadPlatformColor::Install()")
  string(FIND "${out}" "${symbol}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "the module lacks ${symbol}")
  endif()
endforeach()
message(STATUS "the module installs the colour translator at load")
