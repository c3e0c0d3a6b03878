# Libraries that are headers alone, for a cross build: reached by links in a folder of their own, so
# that none of this machine's other headers come along.

set(headers ${CMAKE_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${headers})
foreach(library CLI nlohmann toml++)
  find_path(found NAMES ${library} PATHS /usr/local/include /usr/include
    NO_CACHE REQUIRED NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  file(CREATE_LINK ${found}/${library} ${headers}/${library} SYMBOLIC)
  unset(found)
endforeach()

foreach(target CLI11::CLI11 nlohmann_json::nlohmann_json tomlplusplus::tomlplusplus)
  add_library(${target} INTERFACE IMPORTED)
  target_include_directories(${target} INTERFACE ${headers})
endforeach()
