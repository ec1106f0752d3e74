#include "hdiplot/finish/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include <qpdf/QPDFWriter.hh>

#include "hdiplot/system/errors.h"
#include "hdiplot/system/files.h"
#include "hdiplot/system/process.h"

namespace hdiplot {

namespace fs = std::filesystem;

namespace {

// The owner's password, with which a reader would not mind the permissions. Nobody is to know it.
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
  writer.setPreserveEncryption(false);
  writer.setObjectStreamMode(options.compact ? qpdf_o_generate : qpdf_o_preserve);
  writer.setLinearization(options.linearize);
  // ISO 19005-2:2011, 6.1.7.1.
  writer.setNewlineBeforeEndstream(options.pdfA != PdfA::kNone);
  if (options.encryption) Encrypt(writer, *options.encryption);
  writer.setDeterministicID(options.sourceDateEpoch && !options.encryption);
}

// What failed, or empty.
std::string Write(QPDF& pdf, const fs::path& file, const FinishOptions& options) {
  FileStream stream = CreateNew(file);
  if (!stream) return std::strerror(errno);
  std::string problem;
  try {
    QPDFWriter writer(pdf, "output", stream.get(), /*close_file=*/false);
    SetUp(writer, options);
    writer.write();
  } catch (const std::exception& error) {
    problem = error.what();
  }
  // Some file systems report only here that they had no room.
  if (std::fclose(stream.release()) != 0 && problem.empty()) problem = std::strerror(errno);
  return problem;
}

// A file that is replaced keeps its permissions.
void CopyPermissions(const fs::path& from, const fs::path& to) {
  std::error_code ignored;
  const fs::file_status status = fs::status(from, ignored);
  if (fs::exists(status)) fs::permissions(to, status.permissions(), ignored);
}

}  // namespace

void WritePdf(std::unique_ptr<QPDF> pdf, const fs::path& output, const FinishOptions& options) {
  const fs::path place = WithoutLinks(output);
  const fs::path temporary = place.parent_path() / (".hdiplot." + ProcessNumber() + ".pdf.tmp");
  std::string problem = Write(*pdf, temporary, options);
  // An open file cannot be replaced everywhere.
  pdf.reset();
  if (problem.empty()) {
    CopyPermissions(place, temporary);
    problem = MoveOver(temporary, place);
  }
  if (problem.empty()) return;
  std::error_code ignored;
  fs::remove(temporary, ignored);
  throw FileError(output, 0, "cannot be written: " + problem);
}

}  // namespace hdiplot
