// The progress of a long call on standard output: on a terminal a line that redraws, else at most one line per 10 %.
#pragma once

#include <string>

#include "KvApplMan.hpp"

class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine(); // shows where the call has ended
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// On a terminal, each phase and file has a line of its own. A report without a file belongs to an empty slot and
    /// shows nothing.
    void show(const kvapplman::Progress& progress);

    /// Shows that the call has ended well: at 100 %.
    void complete();

private:
    void end();
    void endLine();
    void print(double fraction);

    const bool terminal_;
    std::string heading_{}; // phase and file of the line
    std::string line_{};    // that was printed last
    double fraction_ = 0.0; // that was reported last
    int printedTenth_ = -1;
};
