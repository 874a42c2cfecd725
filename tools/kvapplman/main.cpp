// The program: words in UTF-8, whatever the system gives.
#include <string>
#include <vector>

#include "command_line.h"
#include "system.h"
#include "worker.h"

#if defined(_WIN32)

#include "KvApplMan.hpp"

int wmain(int count, wchar_t** words) {
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i) {
        texts.push_back(kvapplman::toUtf8(words[i]));
    }
    tool::prepareTerminals();
    tool::leave(tool::runCommandLine(std::move(texts)));
}

#else

int main(int count, char** words) {
    tool::prepareTerminals();
    tool::leave(tool::runCommandLine({words + 1, words + count}));
}

#endif
