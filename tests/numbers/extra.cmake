# These tests link the numbers folder and what it stands on, nothing above it.
set(KELP_TEST_FOLDERS numbers)
