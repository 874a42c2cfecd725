// What commands do to the program of a process, on a target that runs programs. The functions whose names end in Program are
// for targets that do; the others do nothing where there is no program.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/commands.h"

namespace simulated_target {

// Orders, given when a command is accepted.

void startProgram(Application& process, const CommandSetting& setting); // or lets a paused one go on
void stopProgram(Application& process, const CommandSetting& setting);
void pauseProgram(Application& process, const CommandSetting& setting);
void stepProgram(Application& process, const CommandSetting& setting);
void killProgram(Application& process, const CommandSetting& setting);

/// Whether the last order is not yet carried out.
bool isBusy(const Application& process);

// Work, done when a command's time is over.

/// Sees whether what is loaded is a program, and makes it executable.
Failure prepareProgram(Application& process, const CommandSetting& setting);
Failure confirmStart(Application& process, const CommandSetting& setting);
/// Removes it with its folder.
Failure removeProgram(Application& process, const CommandSetting& setting);

/// A running or paused process whose program has ended by itself is stopped.
void noticeEnd(Application& process);

/// Refuses cores that are not there; a program that runs is bound at once.
Failure bindProgram(Application& process, const std::vector<std::uint32_t>& cores, const CommandSetting& setting);

/// Of a process that has a program: how it is, and what it has used.
std::string describeProgram(const Application& process);

} // namespace simulated_target
