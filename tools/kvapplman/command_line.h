// The command line: from words to a command that runs, and to the exit code.
#pragma once

#include <string>
#include <vector>

namespace tool {

/// Does what the words say, which are UTF-8 and begin behind the program's name. Result: the exit code.
int runCommandLine(std::vector<std::string> words);

} // namespace tool
