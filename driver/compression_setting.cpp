// Reads the compression setting.
#include "driver/compression_setting.h"

#include "platform/environment.h"
#include "platform/settings_file.h"

namespace hdi {

engine::Compression CompressionSetting(const std::u16string& section, const std::u16string& file) {
  std::u16string word = EnvironmentVariable(u"HDI_COMPRESSION");
  if (word.empty()) word = ReadSetting(section, u"Compression", u"", file);
  if (word == u"fast") return engine::Compression::kFast;
  if (word == u"small") return engine::Compression::kSmall;
  return engine::Compression::kNormal;
}

}  // namespace hdi
