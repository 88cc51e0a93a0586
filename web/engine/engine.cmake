# The program as WebAssembly, and the npm package around it, in package/ of the build folder. trimora-run.mjs is what
# Emscripten makes; trimora.mjs turns it into a function. Only for Emscripten: emcmake cmake --preset web
target_compile_options(trimora_flags INTERFACE -msimd128 -mbulk-memory -fexceptions)
target_link_options(trimora_flags INTERFACE -fexceptions)

set(package ${PROJECT_BINARY_DIR}/package)
set_target_properties(trimora-run PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${package})
foreach(program trimora trimora-run) # trimora for the tests alone: it asks
  set_target_properties(${program} PROPERTIES SUFFIX .mjs)
  target_link_options(
    ${program}
    PRIVATE # A function that makes an instance, instead of a script that runs at once.
            -sMODULARIZE
            -sEXPORT_ES6
            -sUSE_ES6_IMPORT_META=0
            -sINVOKE_RUN=0
            -sEXPORTED_RUNTIME_METHODS=FS,callMain
            -sFORCE_FILESYSTEM
            # Workers and Node too: nothing is asked of either, since trimora.mjs hands over the compiled program.
            -sENVIRONMENT=web
            # Up to what 32 bits address. No text becomes code, which a content security policy would refuse.
            -sALLOW_MEMORY_GROWTH
            -sMAXIMUM_MEMORY=4GB
            -sDYNAMIC_EXECUTION=0)
endforeach()

# What does not run over letters is made small: it is downloaded.
set(faces ${PROJECT_SOURCE_DIR}/src)
set_source_files_properties(
  ${faces}/trimora_run/batch.cpp
  ${faces}/trimora_run/coding.cpp
  ${faces}/trimora_run/entry.cpp
  ${faces}/trimora_run/filters.cpp
  ${faces}/trimora_run/inputs.cpp
  ${faces}/trimora_run/interruption.cpp
  ${faces}/trimora_run/notes_on_batch.cpp
  ${faces}/trimora_run/option_table.cpp
  ${faces}/trimora_run/options.cpp
  ${faces}/trimora_run/plan.cpp
  ${faces}/trimora_run/result_paths.cpp
  ${faces}/trimora_run/run.cpp
  ${faces}/trimora_run/wildcards.cpp
  ${faces}/library/joining.cpp
  ${faces}/library/library.cpp
  ${faces}/batch/codons.cpp
  ${faces}/batch/genetic_code.cpp
  ${faces}/batch/identity.cpp
  ${faces}/batch/name_keys.cpp
  ${faces}/batch/names.cpp
  ${faces}/batch/overview.cpp
  ${faces}/batch/partitions.cpp
  ${faces}/batch/results_table.cpp
  ${faces}/batch/species.cpp
  ${faces}/ground/failure.cpp
  ${faces}/ground/places.cpp
  ${faces}/output/page.cpp
  ${faces}/output/results.cpp
  PROPERTIES COMPILE_OPTIONS -Oz)
target_compile_options(trimora-run PRIVATE -Oz) # functions.cpp
target_sources(trimora-run PRIVATE ${CMAKE_CURRENT_LIST_DIR}/functions.cpp)

configure_file(${CMAKE_CURRENT_LIST_DIR}/package.json.in ${package}/package.json @ONLY)
foreach(file trimora.mjs functions.mjs gunzip.mjs trimora.d.ts README.md)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/${file} ${package}/${file} COPYONLY)
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/LICENSE ${package}/LICENSE COPYONLY)
add_custom_command(TARGET trimora-run POST_BUILD COMMAND ${CMAKE_COMMAND} -E rename ${package}/trimora-run.wasm
                                                         ${package}/trimora.wasm)
