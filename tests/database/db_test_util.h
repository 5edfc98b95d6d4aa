#pragma once
// A private folder for each test's database files, removed afterwards.
#include <cstdlib>
#include <filesystem>
#include <string>

struct TempFolder {
    TempFolder() {
        char name[] = "/tmp/kelp-db-XXXXXX";
        path = mkdtemp(name);
    }
    ~TempFolder() { std::filesystem::remove_all(path); }
    std::string File(const std::string &name) const { return path + "/" + name; }
    std::string path;
};
