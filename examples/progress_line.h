// The progress of a long call on standard output: on a terminal a line that redraws, else at most one line per 10 %.
#pragma once

#include <cstdint>
#include <string>

#include "KvApplicationManagerAP.h"

class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine(); // ends the line
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// On a terminal, each phase and file has a line of its own. A report without a file belongs to an empty slot and
    /// shows nothing.
    void show(const KvTApplManProgress& progress);

    /// Shows where the call has ended: at 100 % after a success, else where it was. Result: the status.
    std::int32_t ended(std::int32_t status);

private:
    void endLine();
    void print(double fraction);

    const bool terminal_;
    std::string heading_{}; // phase and file of the line
    std::string line_{};    // that was printed last
    double fraction_ = 0.0; // that was reported last
    int printedTenth_ = -1;
};

/// The callback that shows progress; `line` is a ProgressLine.
inline void showProgress(const KvTApplManProgress* progress, void* line) {
    static_cast<ProgressLine*>(line)->show(*progress);
}
