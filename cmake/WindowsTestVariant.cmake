# The Windows test variant: the module's Windows build, compiled against the
# real SDK headers as shipped, but with the Windows functions it calls
# answered by the platform layer (also built against the SDK) from the
# emulated notebook, so the Windows build meets the scenarios the Linux
# build meets. platform_layer/windows/layer_names.h gives those functions
# names of their own; nothing of this reaches the shipped DLL.

set(layer_names ${PROJECT_SOURCE_DIR}/platform_layer/windows/layer_names.h)

add_library(variant_options INTERFACE)
target_compile_options(variant_options INTERFACE -include ${layer_names})
target_link_libraries(variant_options INTERFACE project_options)

# The layer defines the functions the SDK declares as imports from system
# DLLs; these say that here they are defined, not imported. Its own header
# folder comes after the SDK's, so only platform_layer/... is taken from it.
file(GLOB variant_layer_sources CONFIGURE_DEPENDS
  ${PROJECT_SOURCE_DIR}/platform_layer/src/*.cpp ${PROJECT_SOURCE_DIR}/platform_layer/emulated/*.cpp)
list(FILTER variant_layer_sources EXCLUDE REGEX "/bounded_crt\\.cpp$")
add_library(platform_layer_variant SHARED ${variant_layer_sources})
target_compile_definitions(platform_layer_variant PRIVATE
  _KERNEL32_ _SETUPAPI_ _CFGMGR32_ _OLE32_ _OLEAUT32_ _ADVAPI32_)
target_include_directories(platform_layer_variant PRIVATE ${PROJECT_SOURCE_DIR}/platform_layer/src)
target_compile_options(platform_layer_variant PUBLIC
  -idirafter ${PROJECT_SOURCE_DIR}/platform_layer/include)
target_link_libraries(platform_layer_variant PUBLIC emulated_notebook PRIVATE variant_options)

# The vendor stand-ins as the Linux build has them: ports of the emulated
# controller, devices found through the layer.
add_library(portlib_variant SHARED
  ${PROJECT_SOURCE_DIR}/stand_ins/portlib/platform/linux/port_gate.cpp)
target_include_directories(portlib_variant PUBLIC ${PROJECT_SOURCE_DIR}/stand_ins/portlib/include
                                                  ${PROJECT_SOURCE_DIR}/stand_ins/portlib/platform/windows)
target_compile_definitions(portlib_variant PRIVATE PORTLIB_BUILDING)
target_link_libraries(portlib_variant PRIVATE platform_layer_variant variant_options)

get_target_property(hostlib_sources hostlib SOURCES)
add_library(hostlib_variant SHARED ${hostlib_sources})
target_include_directories(hostlib_variant PUBLIC ${PROJECT_SOURCE_DIR}/stand_ins/hostlib/include
                                                  ${PROJECT_SOURCE_DIR}/stand_ins/hostlib/platform/windows)
target_compile_definitions(hostlib_variant PRIVATE HOSTLIB_BUILDING)
target_link_libraries(hostlib_variant PRIVATE platform_layer_variant variant_options)

get_target_property(variant_module_sources module_core SOURCES)
list(TRANSFORM variant_module_sources PREPEND ${PROJECT_SOURCE_DIR}/module/
     REGEX "^[^/]")
add_library(module_core_variant STATIC ${variant_module_sources})
target_include_directories(module_core_variant
  PUBLIC ${PROJECT_SOURCE_DIR}/module/include ${PROJECT_SOURCE_DIR}/module
         ${PROJECT_SOURCE_DIR}/module/platform/windows)
# The identifiers of the instrumentation interfaces come from the SDK.
target_link_libraries(module_core_variant PUBLIC battery_rules wbemuuid hostlib_variant portlib_variant
                                                 platform_layer_variant variant_options)

add_library(battery_module_variant SHARED ${PROJECT_SOURCE_DIR}/module/frame/module_entry.cpp
                                          ${PROJECT_SOURCE_DIR}/cmake/battery_module.def)
target_link_libraries(battery_module_variant PRIVATE module_core_variant)
set_target_properties(battery_module_variant PROPERTIES PREFIX "")
