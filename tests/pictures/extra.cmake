# BMP files for the tests are written by Python at test time.
target_compile_definitions(${target} PRIVATE
  KELP_BMP_WRITER="${CMAKE_CURRENT_SOURCE_DIR}/bitmaps/write_bmps.py")
