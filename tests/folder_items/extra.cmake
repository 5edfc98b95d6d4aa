# Folder items on real files, without the layers above them.
set(KELP_TEST_FOLDERS folder_items)
