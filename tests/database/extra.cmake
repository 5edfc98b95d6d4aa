set(KELP_TEST_FOLDERS database)
