# These tests link the containers folder and what it stands on, nothing above it.
set(KELP_TEST_FOLDERS containers)
