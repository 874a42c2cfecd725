// A host directory with files for one test; it is removed with all that lies in it.
#pragma once

#include "support/one_target.h"
#include "transfer/host_path.h"

class TemporaryTree {
    TemporaryFolder folder_;

public:
    const std::filesystem::path root = folder_.path();

    void file(const std::string& name, std::size_t size) const { folder_.file(name, std::string(size, 'x')); }

    /// As the library's callers hand paths on.
    std::u16string path(const std::string& name = "") const {
        return applman::normalizeHostPath((name.empty() ? root : root / name).u16string().c_str());
    }
};
