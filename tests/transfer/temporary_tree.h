// A host directory with files for one test; it is removed with all that lies in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "transfer/host_path.h"

class TemporaryTree {
public:
    TemporaryTree() {
        std::random_device random;
        do {
            root = std::filesystem::temp_directory_path() / ("transfer_test_" + std::to_string(random()));
        } while (!std::filesystem::create_directory(root));
    }
    ~TemporaryTree() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    TemporaryTree(const TemporaryTree&) = delete;
    TemporaryTree& operator=(const TemporaryTree&) = delete;

    void file(const std::string& name, std::size_t size) const {
        std::filesystem::create_directories((root / name).parent_path());
        std::ofstream{root / name, std::ios::binary} << std::string(size, 'x');
    }

    /// As the library's callers hand paths on.
    std::u16string path(const std::string& name = "") const {
        return applman::normalizeHostPath((name.empty() ? root : root / name).u16string().c_str());
    }

    std::filesystem::path root;
};
