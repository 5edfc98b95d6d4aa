#pragma once
// The database fuzz entries, shared by the libFuzzer programs and the replay
// drivers the test suite runs over the corpora.
#include <cstddef>
#include <cstdint>

// fuzz_database_file: the bytes are a database file.  It is opened read-only
// and every table, row and BLOB is read.  Returns 0.
// fuzz_sql: the bytes are one statement, run on a small database and rolled
// back.  Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
