# The two libraries. Each folder is an object library, so that tests can link the very objects the
# shared libraries are made of, hidden names included.
find_package(PkgConfig REQUIRED)
find_package(PNG REQUIRED)
find_package(JPEG REQUIRED)
find_package(GIF REQUIRED)
pkg_check_modules(TIFF REQUIRED IMPORTED_TARGET libtiff-4)
pkg_check_modules(WEBP REQUIRED IMPORTED_TARGET libwebp libwebpdemux)
pkg_check_modules(LCMS2 REQUIRED IMPORTED_TARGET lcms2)
pkg_check_modules(HWY REQUIRED IMPORTED_TARGET libhwy)
pkg_check_modules(FREETYPE REQUIRED IMPORTED_TARGET freetype2)
pkg_check_modules(FONTCONFIG REQUIRED IMPORTED_TARGET fontconfig)

function(drav_object_library name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
  if(folder STREQUAL platform/media/codecs)
    file(GLOB pict CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/pict/*.cpp)
    list(APPEND sources ${pict})
  endif()
  add_library(${name} OBJECT ${sources})
  target_link_libraries(${name} PUBLIC ${ARGN} PRIVATE drav_compile)
endfunction()

add_library(drav_platform_headers INTERFACE)
target_include_directories(drav_platform_headers INTERFACE
  ${PROJECT_SOURCE_DIR}/platform/include ${PROJECT_SOURCE_DIR}/platform)
add_library(drav_headers INTERFACE)
target_include_directories(drav_headers INTERFACE
  ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(drav_headers INTERFACE drav_platform_headers)

drav_object_library(platform_foundation platform/foundation drav_platform_headers)
drav_object_library(platform_graphics platform/graphics drav_platform_headers
  PkgConfig::LCMS2 PkgConfig::HWY)
drav_object_library(platform_codecs platform/media/codecs drav_platform_headers
  PNG::PNG JPEG::JPEG GIF::GIF PkgConfig::TIFF PkgConfig::WEBP PkgConfig::LCMS2 PkgConfig::FREETYPE
  PkgConfig::FONTCONFIG)
drav_object_library(platform_media platform/media drav_platform_headers PkgConfig::LCMS2)
set(DRAV_PLATFORM_PARTS platform_foundation platform_graphics platform_codecs platform_media)

drav_object_library(drav_core src/core drav_headers)
drav_object_library(drav_pixel src/pixel drav_headers PkgConfig::HWY)
drav_object_library(drav_composite src/composite drav_headers PkgConfig::HWY)
drav_object_library(drav_ops src/ops drav_headers)
drav_object_library(drav_io src/io drav_headers)
drav_object_library(drav_path src/path drav_headers)
drav_object_library(drav_colormatch src/colormatch drav_headers)
set(DRAV_PARTS drav_core drav_pixel drav_composite drav_ops drav_io drav_path drav_colormatch)

function(drav_shared_library name soname exports)
  add_library(${name} SHARED ${PROJECT_SOURCE_DIR}/${exports})
  set_target_properties(${name} PROPERTIES OUTPUT_NAME ${soname} LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/${exports})
  target_link_libraries(${name} PRIVATE ${ARGN} drav_compile)
  target_link_options(${name} PRIVATE
    -Wl,--version-script=${PROJECT_SOURCE_DIR}/${exports} -Wl,--as-needed)
  if(NOT DRAV_SANITIZE)
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
endfunction()

drav_shared_library(DravPlatform DravPlatform platform/exports.map ${DRAV_PLATFORM_PARTS})
target_include_directories(DravPlatform PUBLIC
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platform/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
drav_shared_library(DravKit DravKit src/exports.map ${DRAV_PARTS})
target_link_libraries(DravKit PUBLIC DravPlatform)
target_include_directories(DravKit PUBLIC
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
add_library(DravKit::DravKit ALIAS DravKit)

# For tests, benches and fuzzers: the same objects, linked into the executable.
add_library(drav_internals INTERFACE)
target_link_libraries(drav_internals INTERFACE ${DRAV_PARTS} ${DRAV_PLATFORM_PARTS} drav_compile)
foreach(part ${DRAV_PARTS} ${DRAV_PLATFORM_PARTS})
  target_link_libraries(drav_internals INTERFACE $<TARGET_OBJECTS:${part}>)
endforeach()
