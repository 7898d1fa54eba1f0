# Run by cpack on the installed files before they are packed: what a Debian package must have compressed or stripped.
file(GLOB_RECURSE plain ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/share/man/* ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/changelog)
execute_process(COMMAND gzip -9n ${plain} COMMAND_ERROR_IS_FATAL ANY)

set(sections --remove-section=.comment --remove-section=.note)
file(GLOB_RECURSE archives ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*.a)
execute_process(COMMAND strip --strip-debug --enable-deterministic-archives ${sections} ${archives}
    COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE commands ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/bin/*)
execute_process(COMMAND strip ${sections} ${commands} COMMAND_ERROR_IS_FATAL ANY)
