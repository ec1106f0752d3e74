// The files that the arguments of a command line name. Every function throws CLI::ValidationError.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "hdiplot/command/options.h"

namespace hdiplot {

// The files that one argument means: a directory stands for the drawings in it, in alphabetical order.
[[nodiscard]] std::vector<std::filesystem::path> InputsNamed(const std::string& argument);

// Sets `isTrace`, and refuses inputs and options that exclude each other.
void SettleInputs(CommandLine& line);

// Completes the names of the files to be written: in a directory they are named after the input.
void SettleOutputs(CommandLine& line);

}  // namespace hdiplot
