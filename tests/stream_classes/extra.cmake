# The stream engines on real files and strings, without the layers above.
set(KELP_TEST_FOLDERS stream_classes files)
