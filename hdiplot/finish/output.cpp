#include "hdiplot/finish/output.h"

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDFWriter.hh>
#include <random>
#include <string>

#include "hdiplot/system/output_file.h"

namespace hdiplot {

namespace {

// The end of qpdf's pipelines.
class FileSink : public Pipeline {
 public:
  explicit FileSink(FileReplacement& file) : Pipeline("output", nullptr), file_(file) {}

  void write(const unsigned char* bytes, size_t count) override {
    file_.Write({reinterpret_cast<const char*>(bytes), count});
  }
  void finish() override {}

 private:
  FileReplacement& file_;
};

// The owner's password, which would lift the restrictions. Nobody is to know it.
std::string RandomPassword() {
  constexpr int kWords = 8;
  std::random_device device;
  std::string password;
  for (int i = 0; i < kWords; ++i) password += std::to_string(device());
  return password;
}

// Revision 6 of the standard security handler, AES-256 (ISO 32000-2:2020, 7.6.4).
void Encrypt(QPDFWriter& writer, const Encryption& encryption) {
  const bool mayChange = true;
  writer.setR6EncryptionParameters(encryption.password.c_str(), RandomPassword().c_str(),
                                   /*allow_accessibility=*/true, encryption.mayCopy, mayChange, mayChange,
                                   mayChange, mayChange, encryption.mayPrint ? qpdf_r3p_full : qpdf_r3p_none,
                                   /*encrypt_metadata_aes=*/true);
}

void SetUp(QPDFWriter& writer, const FinishOptions& options) {
  writer.setDecodeLevel(qpdf_dl_none);
  writer.setRecompressFlate(false);
  writer.setObjectStreamMode(options.compact ? qpdf_o_generate : qpdf_o_preserve);
  writer.setLinearization(options.linearize);
  // ISO 19005-2:2011, 6.1.7.1.
  writer.setNewlineBeforeEndstream(options.pdfA != PdfA::kNone);
  if (options.encryption) Encrypt(writer, *options.encryption);
  writer.setDeterministicID(options.sourceDateEpoch && !options.encryption);
}

}  // namespace

void WritePdf(std::unique_ptr<QPDF> pdf, const std::filesystem::path& output, const FinishOptions& options) {
  FileReplacement file(output);
  FileSink sink(file);
  try {
    QPDFWriter writer(*pdf);
    writer.setOutputPipeline(&sink);
    SetUp(writer, options);
    writer.write();
  } catch (const std::exception& error) {
    file.Fail(error.what());
  }
  // Not every system replaces an open file.
  pdf.reset();
  file.Commit();
}

}  // namespace hdiplot
