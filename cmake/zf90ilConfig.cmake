# find_package(zf90il) gives the library zf90il::zf90il.
include(CMakeFindDependencyMacro)
find_dependency(Threads)
include("${CMAKE_CURRENT_LIST_DIR}/zf90ilTargets.cmake")
