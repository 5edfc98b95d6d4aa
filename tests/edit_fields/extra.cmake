# The clipboard is the X server's: tests that own it must not overlap.
set(KELP_TEST_EXTRA_PROPERTIES "RESOURCE_LOCK;x-clipboard")
