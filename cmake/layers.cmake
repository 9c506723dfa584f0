# A layer is a folder of the house as a library. Its headers are reachable only through the
# include directory that the layer exports, so a folder that does not link a layer cannot include
# it: an include against the direction of the dependencies does not compile.

set(KIVRA_LAYERS_DIR ${CMAKE_BINARY_DIR}/layers)

# kivra_export_headers(<layer> <folder> <header>...) puts links to the headers where only users of
# the layer look.
function(kivra_export_headers layer folder)
  set(exported ${KIVRA_LAYERS_DIR}/${layer}/${folder})
  file(REMOVE_RECURSE ${KIVRA_LAYERS_DIR}/${layer})
  file(MAKE_DIRECTORY ${exported})
  foreach(header ${ARGN})
    get_filename_component(name ${header} NAME)
    file(CREATE_LINK ${header} ${exported}/${name} SYMBOLIC)
  endforeach()
endfunction()

# kivra_layer(<layer> FOLDER <folder> [LINK <target>...] [PRIVATE_LINK <target>...]) makes the library
# kivra_<layer> of the folder's sources.
function(kivra_layer layer)
  cmake_parse_arguments(ARG "" "FOLDER" "LINK;PRIVATE_LINK" ${ARGN})
  file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${ARG_FOLDER}/*.h)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${ARG_FOLDER}/*.cpp)
  kivra_export_headers(${layer} ${ARG_FOLDER} ${headers})
  if(sources)
    add_library(kivra_${layer} STATIC ${sources})
    target_link_libraries(kivra_${layer} PUBLIC ${ARG_LINK} PRIVATE kivra_options
                                                                    ${ARG_PRIVATE_LINK})
    set(scope PUBLIC)
  else()
    add_library(kivra_${layer} INTERFACE)
    target_link_libraries(kivra_${layer} INTERFACE ${ARG_LINK})
    set(scope INTERFACE)
  endif()
  target_include_directories(kivra_${layer} ${scope} ${KIVRA_LAYERS_DIR}/${layer})
endfunction()
