# ia_intercept_calls(program): see intercepted_calls.h.
function(ia_intercept_calls program)
  target_sources(${program} PRIVATE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/intercepted_calls.cc)
  foreach(function
      analyze_common_readxml_for_list
      analyze_GetInputOptions
      analyze_GetFinisherOption
      OptionList_Set_FlagValue
      OptionList_Set_ArrrayFlagValue
      zflaginfo_getflags
      zflaginfo_init)
    target_link_options(${program} PRIVATE LINKER:--wrap=${function})
  endforeach()
endfunction()
