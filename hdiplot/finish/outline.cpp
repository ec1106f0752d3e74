#include "hdiplot/finish/outline.h"

#include <algorithm>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>

#include "hdiplot/finish/text.h"

namespace hdiplot {

namespace {

struct Entry {
  std::string title;
  size_t page = 0;
  std::vector<Entry> children;
};

PageName NameOf(const std::vector<PageName>& names, size_t page) {
  if (page < names.size() && !names[page].page.empty()) return names[page];
  const std::string number = std::to_string(page + 1);
  return {page < names.size() ? names[page].drawing : "", number};
}

std::vector<Entry> Entries(const std::vector<PageName>& names) {
  const bool hasSeveralDrawings = std::ranges::any_of(
      names, [&names](const PageName& name) { return name.drawing != names.front().drawing; });
  std::vector<Entry> entries;
  for (size_t page = 0; page < names.size();) {
    const std::string& drawing = names[page].drawing;
    size_t end = page + 1;
    if (hasSeveralDrawings) {
      while (end < names.size() && names[end].drawing == drawing) ++end;
    }
    const bool isNested =
        hasSeveralDrawings && !drawing.empty() && (end - page > 1 || names[page].page != drawing);
    if (isNested) {
      Entry& group = entries.emplace_back(Entry{drawing, page, {}});
      for (; page < end; ++page) group.children.push_back({names[page].page, page, {}});
    } else {
      for (; page < end; ++page) entries.push_back({names[page].page, page, {}});
    }
  }
  return entries;
}

class OutlineWriter {
 public:
  explicit OutlineWriter(QPDF& pdf) : pdf_(pdf) {}

  // Makes the items below `parent`, all of them open, and enters them there. Returns how many there are.
  int Write(QPDFObjectHandle parent, const std::vector<Entry>& entries) {
    std::vector<QPDFObjectHandle> items;
    int count = 0;
    for (const Entry& entry : entries) {
      QPDFObjectHandle item = pdf_.makeIndirectObject(QPDFObjectHandle::newDictionary());
      item.replaceKey("/Title", TextString(entry.title));
      item.replaceKey("/Parent", parent);
      QPDFObjectHandle destination = QPDFObjectHandle::newArray();
      destination.appendItem(pdf_.getAllPages().at(entry.page));
      destination.appendItem(QPDFObjectHandle::newName("/Fit"));
      item.replaceKey("/Dest", destination);
      if (!items.empty()) {
        item.replaceKey("/Prev", items.back());
        items.back().replaceKey("/Next", item);
      }
      items.push_back(item);
      count += 1 + (entry.children.empty() ? 0 : Write(item, entry.children));
    }
    if (items.empty()) return 0;
    parent.replaceKey("/First", items.front());
    parent.replaceKey("/Last", items.back());
    parent.replaceKey("/Count", QPDFObjectHandle::newInteger(count));
    return count;
  }

 private:
  QPDF& pdf_;
};

// Each page has its own label, a prefix without a number.
QPDFObjectHandle PageLabels(const std::vector<PageName>& names) {
  QPDFObjectHandle numbers = QPDFObjectHandle::newArray();
  for (size_t page = 0; page < names.size(); ++page) {
    QPDFObjectHandle label = QPDFObjectHandle::newDictionary();
    label.replaceKey("/P", TextString(names[page].page));
    numbers.appendItem(QPDFObjectHandle::newInteger(static_cast<long long>(page)));
    numbers.appendItem(label);
  }
  QPDFObjectHandle tree = QPDFObjectHandle::newDictionary();
  tree.replaceKey("/Nums", numbers);
  return tree;
}

}  // namespace

void SetOutline(QPDF& pdf, const std::vector<PageName>& names) {
  std::vector<PageName> pages;
  for (size_t page = 0; page < pdf.getAllPages().size(); ++page) pages.push_back(NameOf(names, page));
  QPDFObjectHandle root = pdf.getRoot();
  QPDFObjectHandle outline = pdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
  outline.replaceKey("/Type", QPDFObjectHandle::newName("/Outlines"));
  OutlineWriter(pdf).Write(outline, Entries(pages));
  root.replaceKey("/Outlines", outline);
  root.replaceKey("/PageLabels", pdf.makeIndirectObject(PageLabels(pages)));
  // A reader shows one pane: of a drawing with layers, theirs.
  const bool hasLayers = root.hasKey("/OCProperties");
  root.replaceKey("/PageMode", QPDFObjectHandle::newName(hasLayers ? "/UseOC" : "/UseOutlines"));
}

}  // namespace hdiplot
