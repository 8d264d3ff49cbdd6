# Checks that the library exports functions of its three headers and no other name of ours, and that no static of a
# function in a Core or XMLUtils header was compiled into it: a hidden copy would live beside the original.
#   cmake -D NM=... -D LIBRARY=... -P CheckExports.cmake
execute_process(COMMAND "${NM}" --dynamic --defined-only --demangle "${LIBRARY}"
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]*Vantor::[^\n]*" symbols "${symbols}")

if(NOT symbols)
  message(SEND_ERROR "${LIBRARY} exports nothing")
endif()
foreach(symbol IN LISTS symbols)
  if(NOT symbol MATCHES "^[0-9a-f]+ T Vantor::(XMLBuilder::(partition2XML|getNamespaceURI|getPrefix)|XML2Partition::getPartitionMetadataFrom(Buffer|String|File)|LosslessXML::(describe|exportDocument|exportBytes|Document::(~?Document|operator=|fromBytes|fromFile|description|isDescriptionDamaged|vocabulary|isNested|import)))(\\[abi:[a-z0-9]+\\])?\\(")
    message(SEND_ERROR "exported, but not for callers: ${symbol}")
  endif()
  message(STATUS "${symbol}")
endforeach()

execute_process(COMMAND "${NM}" --defined-only --demangle "${LIBRARY}"
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "guard variable for Vantor::[^\n]*" guards "${symbols}")
list(FILTER guards EXCLUDE REGEX "anonymous namespace|Vantor::(XMLBuilder|XML2Partition|LosslessXML)::")
foreach(guard IN LISTS guards)
  message(SEND_ERROR "a second copy of a static: ${guard}")
endforeach()
