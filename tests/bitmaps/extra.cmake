# The BMP reader and writer alone, and the fuzz entry that replays the corpus.
set(KELP_TEST_FOLDERS bitmaps)
target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/fuzz/fuzz_bmp.cpp)
target_compile_definitions(${target} PRIVATE
  KELP_BMP_CORPUS="${PROJECT_SOURCE_DIR}/fuzz/corpus/bmp"
  KELP_BMP_WRITER="${CMAKE_CURRENT_SOURCE_DIR}/bitmaps/write_bmps.py")
