// What the border's tests take from the platform. Every platform defines all of it once: linux/ here, and
// tests/windows/border/.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

namespace border {

class Sandbox;

// PDF.hdi, loaded as a host does it; what loads nothing ends the test program.
[[nodiscard]] void* LoadModule();
void UnloadModule(void* module);
[[nodiscard]] void* ModuleSymbol(void* module, const char* name);

// A function for global memory: GlobalAlloc and its family.
[[nodiscard]] void* MemorySymbol(const char* name);

[[nodiscard]] std::optional<std::string> Variable(const std::string& name);
void SetVariable(const std::string& name, const std::optional<std::string>& value);

// Gives the sandbox a desktop that notes the start of a viewer, and nobody who sits before it.
void SetUpDesktop(Sandbox& sandbox);
// Puts somebody before it, who answers the save dialog with $HDI_TEST_CHOICE, empty for cancelling. A line of
// the log tells what the dialog proposed: "save NAME".
void SetUpUser(Sandbox& sandbox);

// Whether `file` is a PDF without a fault, by a party that had no hand in writing it.
[[nodiscard]] testing::AssertionResult IsSoundPdf(const std::filesystem::path& file);
[[nodiscard]] int PageCount(const std::filesystem::path& file);

}  // namespace border
