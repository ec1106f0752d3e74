#include "hdiplot/finish/objects.h"

#include <qpdf/Pl_Flate.hh>
#include <qpdf/Pl_String.hh>

namespace hdiplot {

void SetCompressedData(QPDFObjectHandle stream, std::string_view data) {
  std::string compressed;
  Pl_String sink("compressed", nullptr, compressed);
  Pl_Flate deflate("deflate", &sink, Pl_Flate::a_deflate);
  deflate.write(reinterpret_cast<const unsigned char*>(data.data()), data.size());
  deflate.finish();
  stream.replaceStreamData(compressed, QPDFObjectHandle::newName("/FlateDecode"),
                           QPDFObjectHandle::newNull());
}

}  // namespace hdiplot
