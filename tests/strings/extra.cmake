# These tests link the strings folder and what it stands on, nothing above it.
set(KELP_TEST_FOLDERS strings)
