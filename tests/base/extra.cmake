# These tests link the base folder and what it stands on, nothing above it.
set(KELP_TEST_FOLDERS base)
