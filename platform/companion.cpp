#include "platform/companion.h"

#include <memory>
#include <string>

#include "platform/companion_module.h"
#include "platform/files.h"

namespace hdi {
namespace {

using EditFunction = int32_t(void* parent, HT_Driver* driver);
using SaveAsFunction = int32_t(void* parent, int32_t* noHint);

std::u16string ModulePath() {
  const char16_t* directory = OrvaneGetAppFullPath();
  return (directory == nullptr ? u"" : directory) + (kPathSeparator + std::u16string(u"PDF-UI.dll"));
}

}  // namespace

void EditProperties(void* parentWindow, HT_Driver* driver) {
  const CompanionModule module(ModulePath());
  auto* edit = module.Find<EditFunction>("InvokeCustomPropertiesDlg");
  if (edit == nullptr) return;
  const std::shared_ptr<void> parent = MakeCompanionParent(parentWindow);
  edit(parent.get(), driver);
}

bool AskReplaceExisting(void* parentWindow, int32_t& noHint) {
  const CompanionModule module(ModulePath());
  if (!module.IsLoaded()) return AskReplaceWithoutCompanion(noHint);
  auto* ask = module.Find<SaveAsFunction>("InvokeSaveAsDlg");
  if (ask == nullptr) return false;
  const std::shared_ptr<void> parent =
      MakeCompanionParent(parentWindow == nullptr ? DesktopWindow() : parentWindow);
  int32_t choice = noHint;
  if (ask(parent.get(), &choice) != 1) return false;
  noHint = choice;
  return true;
}

}  // namespace hdi
