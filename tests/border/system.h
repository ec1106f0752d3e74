// Platform functions of the border tests, defined once per platform: in linux/ here, and in
// tests/windows/border/.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

namespace border {

class Sandbox;

// Loads PDF.hdi as a host does. Failing to load ends the test program.
[[nodiscard]] void* LoadModule();
void UnloadModule(void* module);
[[nodiscard]] void* ModuleSymbol(void* module, const char* name);

// Returns a global memory function: GlobalAlloc and its family.
[[nodiscard]] void* MemorySymbol(const char* name);

[[nodiscard]] std::optional<std::string> Variable(const std::string& name);
void SetVariable(const std::string& name, const std::optional<std::string>& value);

// Gives the sandbox a desktop that logs the start of a viewer, without a user.
void SetUpDesktop(Sandbox& sandbox);
// Adds a user who answers the save dialog with $HDI_TEST_CHOICE; empty cancels. The log gets a line "save
// NAME" with the proposed name.
void SetUpUser(Sandbox& sandbox);

// Whether `file` is a valid PDF, checked by other software.
[[nodiscard]] testing::AssertionResult IsSoundPdf(const std::filesystem::path& file);
[[nodiscard]] int PageCount(const std::filesystem::path& file);

}  // namespace border
