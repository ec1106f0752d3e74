#include "hdiplot/text/font_table.h"

#include "hdiplot/system/names.h"

namespace hdiplot {

namespace {

constexpr OutlineFileEntry kOutlineFiles[] = {
    {"arial", "Arial"},
    {"arialbd", "Arial", true},
    {"ariali", "Arial", false, true},
    {"arialbi", "Arial", true, true},
    {"arialn", "Arial Narrow"},
    {"arialnb", "Arial Narrow", true},
    {"arialni", "Arial Narrow", false, true},
    {"arialnbi", "Arial Narrow", true, true},
    {"arialuni", "Arial Unicode MS"},
    {"calibri", "Calibri"},
    {"calibrib", "Calibri", true},
    {"calibrii", "Calibri", false, true},
    {"calibriz", "Calibri", true, true},
    {"cambria", "Cambria"},
    {"cambriab", "Cambria", true},
    {"cambriai", "Cambria", false, true},
    {"cambriaz", "Cambria", true, true},
    {"comic", "Comic Sans MS"},
    {"comicbd", "Comic Sans MS", true},
    {"consola", "Consolas"},
    {"consolab", "Consolas", true},
    {"consolai", "Consolas", false, true},
    {"consolaz", "Consolas", true, true},
    {"cour", "Courier New"},
    {"courbd", "Courier New", true},
    {"couri", "Courier New", false, true},
    {"courbi", "Courier New", true, true},
    {"dejavusans", "DejaVu Sans"},
    {"dejavusans-bold", "DejaVu Sans", true},
    {"dejavusansmono", "DejaVu Sans Mono"},
    {"dejavuserif", "DejaVu Serif"},
    {"georgia", "Georgia"},
    {"georgiab", "Georgia", true},
    {"georgiai", "Georgia", false, true},
    {"georgiaz", "Georgia", true, true},
    {"gothic", "Century Gothic"},
    {"gothicb", "Century Gothic", true},
    {"isocpeur", "ISOCPEUR"},
    {"isocteur", "ISOCTEUR"},
    {"liberationsans-regular", "Liberation Sans"},
    {"liberationsans-bold", "Liberation Sans", true},
    {"liberationserif-regular", "Liberation Serif"},
    {"liberationmono-regular", "Liberation Mono"},
    {"micross", "Microsoft Sans Serif"},
    {"mingliu", "MingLiU"},
    {"msgothic", "MS Gothic"},
    {"msmincho", "MS Mincho"},
    {"msjh", "Microsoft JhengHei"},
    {"msyh", "Microsoft YaHei"},
    {"msyhbd", "Microsoft YaHei", true},
    {"pala", "Palatino Linotype"},
    {"segoeui", "Segoe UI"},
    {"segoeuib", "Segoe UI", true},
    {"simfang", "FangSong"},
    {"simhei", "SimHei"},
    {"simkai", "KaiTi"},
    {"simsun", "SimSun"},
    {"simsunb", "SimSun-ExtB"},
    {"symbol", "Symbol"},
    {"tahoma", "Tahoma"},
    {"tahomabd", "Tahoma", true},
    {"times", "Times New Roman"},
    {"timesbd", "Times New Roman", true},
    {"timesi", "Times New Roman", false, true},
    {"timesbi", "Times New Roman", true, true},
    {"trebuc", "Trebuchet MS"},
    {"trebucbd", "Trebuchet MS", true},
    {"trebucit", "Trebuchet MS", false, true},
    {"trebucbi", "Trebuchet MS", true, true},
    {"verdana", "Verdana"},
    {"verdanab", "Verdana", true},
    {"verdanai", "Verdana", false, true},
    {"verdanaz", "Verdana", true, true},
    {"webdings", "Webdings"},
    {"wingding", "Wingdings"},
};

constexpr StrokeFileEntry kStrokeFiles[] = {
    {"txt", "rowmans"},
    {"gdt", "rowmans"},
    {"standard", "rowmans"},
    {"simplex", "rowmans"},
    {"romans", "rowmans"},
    {"romand", "rowmand"},
    {"romanc", "timesr"},
    {"romant", "timesrb"},
    {"complex", "timesr"},
    {"italic", "timesi"},
    {"italicc", "timesi"},
    {"italict", "timesib"},
    {"scripts", "scripts"},
    {"scriptc", "scriptc"},
    {"gothice", "gothiceng"},
    {"gothicg", "gothicger"},
    {"gothici", "gothicita"},
    {"greeks", "greeks"},
    {"greekc", "greekc"},
    {"cyrillic", "cyrilc_1"},  // alphabetical order
    {"cyriltlc", "cyrillic"},  // phonetic order
    {"syastro", "astrology"},
    {"symap", "markers"},
    {"symath", "mathlow"},
    {"symeteo", "meteorology"},
    {"symusic", "music"},
    {"monotxt", "rowmans", true},
    {"isocp", "rowmans"},
    {"isocp2", "rowmans"},
    {"isocp3", "rowmans"},
    {"isoct", "rowmans", true},
    {"isoct2", "rowmans", true},
    {"isoct3", "rowmans", true},
    {"iso", "rowmans"},
    {"iso3098b", "rowmans"},
    {"bigfont", "MS Gothic", false, true},
    {"chineset", "MingLiU", false, true},
    {"extfont", "MS Gothic", false, true},
    {"extfont2", "MS Gothic", false, true},
    {"gbcbig", "SimSun", false, true},
    {"hztxt", "SimSun", false, true},
    {"whgtxt", "Batang", false, true},
    {"whtmtxt", "Batang", false, true},
};

constexpr std::string_view kSans[] = {"Liberation Sans", "Arimo", "DejaVu Sans", "FreeSans"};
constexpr std::string_view kNarrow[] = {"Liberation Sans Narrow", "DejaVu Sans Condensed", "Liberation Sans"};
constexpr std::string_view kWide[] = {"DejaVu Sans", "Bitstream Vera Sans", "Liberation Sans"};
constexpr std::string_view kCalibri[] = {"Carlito", "Liberation Sans", "DejaVu Sans"};
constexpr std::string_view kCambria[] = {"Caladea", "Liberation Serif", "DejaVu Serif"};
constexpr std::string_view kSerif[] = {"Liberation Serif", "Tinos", "DejaVu Serif", "FreeSerif"};
constexpr std::string_view kGeorgia[] = {"Gelasio", "DejaVu Serif", "Liberation Serif"};
constexpr std::string_view kMono[] = {"Liberation Mono", "Cousine", "DejaVu Sans Mono", "FreeMono"};
constexpr std::string_view kTechnical[] = {"osifont", "Liberation Sans Narrow", "Liberation Sans",
                                           "DejaVu Sans"};
constexpr std::string_view kHan[] = {"WenQuanYi Zen Hei", "WenQuanYi Micro Hei", "Droid Sans Fallback",
                                     "AR PL UMing CN"};
constexpr std::string_view kJapanese[] = {"IPAGothic", "TakaoGothic", "VL Gothic", "WenQuanYi Zen Hei",
                                          "Droid Sans Fallback"};
constexpr std::string_view kKorean[] = {"NanumGothic", "UnBatang", "Baekmuk Batang", "WenQuanYi Zen Hei",
                                        "Droid Sans Fallback"};

struct StandIns {
  std::string_view family;
  std::span<const std::string_view> standIns;
};

constexpr StandIns kStandIns[] = {
    {"Arial", kSans},
    {"Arial Narrow", kNarrow},
    {"Arial Unicode MS", kWide},
    {"Batang", kKorean},
    {"Calibri", kCalibri},
    {"Cambria", kCambria},
    {"Century Gothic", kSans},
    {"Comic Sans MS", kWide},
    {"Consolas", kMono},
    {"Courier New", kMono},
    {"FangSong", kHan},
    {"Georgia", kGeorgia},
    {"Gulim", kKorean},
    {"Helvetica", kSans},
    {"ISOCPEUR", kTechnical},
    {"ISOCTEUR", kMono},
    {"KaiTi", kHan},
    {"Malgun Gothic", kKorean},
    {"Meiryo", kJapanese},
    {"Microsoft JhengHei", kHan},
    {"Microsoft Sans Serif", kSans},
    {"Microsoft YaHei", kHan},
    {"MingLiU", kHan},
    {"MS Gothic", kJapanese},
    {"MS Mincho", kJapanese},
    {"NSimSun", kHan},
    {"Palatino Linotype", kSerif},
    {"Segoe UI", kSans},
    {"SimHei", kHan},
    {"SimSun", kHan},
    {"SimSun-ExtB", kHan},
    {"Tahoma", kWide},
    {"Times New Roman", kSerif},
    {"Trebuchet MS", kSans},
    {"Verdana", kWide},
};

}  // namespace

std::span<const OutlineFileEntry> OutlineFileTable() { return kOutlineFiles; }

std::span<const StrokeFileEntry> StrokeFileTable() { return kStrokeFiles; }

std::span<const std::string_view> StandInFamilies(std::string_view family) {
  for (const StandIns& entry : kStandIns) {
    if (IsSameName(entry.family, family)) return entry.standIns;
  }
  return {};
}

}  // namespace hdiplot
