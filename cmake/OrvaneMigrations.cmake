# orvane_embed_migrations(<floor>): the numbered SQL files of src/server/schema/{sqlite,postgres} become two tables inside
# the floor's library (src/server/schema/embedded_migrations.h), so that a server needs no files beside its binary.
function(orvane_embed_migrations name)
  set(schema "${PROJECT_SOURCE_DIR}/src/server/schema")
  set(generated "${PROJECT_BINARY_DIR}/generated/server/embedded_migrations.cpp")
  file(GLOB sqlite CONFIGURE_DEPENDS "${schema}/sqlite/*.sql")
  file(GLOB postgres CONFIGURE_DEPENDS "${schema}/postgres/*.sql")

  # Rewritten only when the set of files changes: a removed file makes a new table too.
  set(list "${PROJECT_BINARY_DIR}/generated/server/migrations.cmake")
  file(CONFIGURE OUTPUT "${list}" CONTENT "set(sqlite \"${sqlite}\")\nset(postgres \"${postgres}\")\n" @ONLY)

  set(script "${PROJECT_SOURCE_DIR}/cmake/EmbedMigrations.cmake")
  add_custom_command(
    OUTPUT "${generated}"
    COMMAND "${CMAKE_COMMAND}" "-DLIST=${list}" "-DOUT=${generated}" -P "${script}"
    DEPENDS ${sqlite} ${postgres} "${list}" "${script}"
    COMMENT "Embedding schema migrations"
    VERBATIM)
  target_sources(orvane_${name} PRIVATE "${generated}")
endfunction()
