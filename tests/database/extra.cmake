set(KELP_TEST_FOLDERS database)
find_package(Python3 REQUIRED COMPONENTS Interpreter)
target_compile_definitions(${target} PRIVATE
  KELP_DATABASE_CORPUS="${CMAKE_CURRENT_SOURCE_DIR}/database/corpus")
# The same corpus against SQLite, the independent reference.
add_test(NAME Database.CorpusAgreesWithSqlite
  COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/database/sqlite_corpus.py
          ${CMAKE_CURRENT_SOURCE_DIR}/database/corpus)
