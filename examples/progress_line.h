// The progress of a download on standard output: on a terminal a line that redraws, else a plain line now and then.
#pragma once

#include <string>

#include "KvApplicationManagerAP.h"

class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine(); // ends the line
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Each phase and file has a line of its own. A report without a file belongs to an empty slot and shows nothing.
    void show(const KvTApplManProgress& progress);

private:
    void endLine();
    void redraw(const std::string& line);
    void printNowAndThen(const std::string& line, double fraction);

    const bool terminal_;
    std::string heading_{}; // phase and file of the line
    std::string line_{};
    double printedFraction_ = 0.0;
};

/// The callback that shows progress; `line` is a ProgressLine.
inline void showProgress(const KvTApplManProgress* progress, void* line) {
    static_cast<ProgressLine*>(line)->show(*progress);
}
