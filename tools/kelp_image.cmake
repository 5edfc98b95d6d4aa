# Building application images: code compiled as image code, linked by
# kelp-image and appended to a copy of kelp.  Included before the folders
# that build images, so that they can use these functions.

# Compiler options of code that goes into an application image: see
# docs/image-format.md for why each is needed.  Sanitizers stay out: their
# calls would be names neither the runtime nor a library named on the link
# command answers.
set(KELP_IMAGE_COMPILE_OPTIONS
  -fno-pic -mcmodel=large -fno-asynchronous-unwind-tables -fno-stack-protector -fno-sanitize=all
  $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics -fno-sized-deallocation>
  CACHE INTERNAL "how image code is compiled")

# kelp_image_objects(<target> <source>...): an object library of image code,
# which sees only the public headers.
function(kelp_image_objects target)
  add_library(${target} OBJECT ${ARGN})
  target_compile_options(${target} PRIVATE ${KELP_IMAGE_COMPILE_OPTIONS})
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/include)
endfunction()

# kelp_link_image(<name> OBJECTS <object library> [ENTRY <function>]
#                 [SOFT <function:library>...] [SOFT_DATA <variable:library>...]
#                 [MORE <argument>...] [DEPENDS <file or target>...])
# Links the object library with kelp-image into bin/<name>: a copy of kelp
# with the image appended.  MORE passes further arguments (resources,
# plug-ins, an options segment).
function(kelp_link_image name)
  cmake_parse_arguments(I "" "OBJECTS;ENTRY" "SOFT;SOFT_DATA;MORE;DEPENDS" ${ARGN})
  set(arguments)
  foreach(soft IN LISTS I_SOFT)
    list(APPEND arguments --soft ${soft})
  endforeach()
  foreach(soft IN LISTS I_SOFT_DATA)
    list(APPEND arguments --soft-data ${soft})
  endforeach()
  if(I_ENTRY)
    list(APPEND arguments --entry ${I_ENTRY})
  endif()
  set(out ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name})
  add_custom_command(OUTPUT ${out}
    COMMAND kelp-image link $<TARGET_OBJECTS:${I_OBJECTS}> ${arguments} ${I_MORE}
            --append-to $<TARGET_FILE:kelp> --out ${out}
    DEPENDS ${I_OBJECTS} $<TARGET_OBJECTS:${I_OBJECTS}> kelp kelp-image ${I_DEPENDS}
    COMMENT "Linking the image of ${name}"
    COMMAND_EXPAND_LISTS VERBATIM)
  add_custom_target(${name} ALL DEPENDS ${out})
endfunction()

# kelp_add_image(<name> SOURCES <file>... [ENTRY ...] [SOFT ...] [SOFT_DATA ...])
# Both steps for an application of a few sources.
function(kelp_add_image name)
  cmake_parse_arguments(I "" "ENTRY" "SOURCES;SOFT;SOFT_DATA" ${ARGN})
  kelp_image_objects(${name}_image_objects ${I_SOURCES})
  set(entry)
  if(I_ENTRY)
    set(entry ENTRY ${I_ENTRY})
  endif()
  kelp_link_image(${name} OBJECTS ${name}_image_objects ${entry} SOFT ${I_SOFT}
    SOFT_DATA ${I_SOFT_DATA})
endfunction()
