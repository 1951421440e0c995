# tavo_add_python_package(<target> <folder> [<source>...])
# The module tavo._core, with these sources besides its own, and links to the package's other files in <folder>/tavo:
# put <folder> in PYTHONPATH.
function(tavo_add_python_package target folder)
  file(GLOB sources CONFIGURE_DEPENDS "${TAVO_PYTHON_SOURCES}/src/*.cpp")
  pybind11_add_module(${target} MODULE NO_EXTRAS ${sources} ${ARGN})
  tavo_target_settings(${target})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME _core LIBRARY_OUTPUT_DIRECTORY "${folder}/tavo")
  target_link_libraries(${target} PRIVATE tavo_toolkit tavo_config tavo_client tavo_simulator)
  # Another library in the process may hold the same code.
  target_link_options(${target} PRIVATE "LINKER:--exclude-libs,ALL")
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}")

  set(package "${TAVO_PYTHON_SOURCES}/tavo")
  file(GLOB modules CONFIGURE_DEPENDS "${package}/*.py" "${package}/*.pyi" "${package}/py.typed")
  file(MAKE_DIRECTORY "${folder}/tavo")
  foreach(module IN LISTS modules)
    get_filename_component(name "${module}" NAME)
    file(CREATE_LINK "${module}" "${folder}/tavo/${name}" SYMBOLIC COPY_ON_ERROR)
  endforeach()
endfunction()
