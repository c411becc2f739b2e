if(NOT EXISTS "${TO}")
  configure_file("${FROM}" "${TO}" COPYONLY)
endif()
