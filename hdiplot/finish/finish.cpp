#include "hdiplot/finish/finish.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>

#include "hdiplot/finish/attachments.h"
#include "hdiplot/finish/equal_images.h"
#include "hdiplot/finish/metadata.h"
#include "hdiplot/finish/outline.h"
#include "hdiplot/finish/output.h"
#include "hdiplot/finish/pdfa.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/files.h"

namespace hdiplot {

namespace {

std::unique_ptr<QPDF> Open(const std::filesystem::path& file) {
  FileStream stream = OpenToRead(file);
  if (!stream) throw FileError(file, 0, std::string("cannot be read: ") + std::strerror(errno));
  auto pdf = std::make_unique<QPDF>();
  pdf->setSuppressWarnings(true);
  try {
    pdf->processFile("input", stream.release(), /*close_file=*/true);
  } catch (const QPDFExc& error) {
    const bool isLocked = error.getErrorCode() == qpdf_e_password;
    throw FileError(file, 0, isLocked ? "is encrypted" : "is not a PDF: " + error.getMessageDetail());
  }
  if (pdf->isEncrypted()) throw FileError(file, 0, "is encrypted");
  return pdf;
}

// What the reader of the file had to repair.
std::vector<std::string> Repairs(QPDF& pdf, const std::filesystem::path& file) {
  std::vector<std::string> repairs;
  for (const QPDFExc& warning : pdf.getWarnings()) {
    repairs.push_back(PathText(file) + ": " + warning.getMessageDetail());
  }
  return repairs;
}

void Change(QPDF& pdf, const FinishOptions& options, std::vector<std::string>& losses) {
  if (options.bookmarks) SetOutline(pdf, *options.bookmarks);
  SetMetadata(pdf, options);
  for (const auto& file : options.attachments) Attach(pdf, file, options.sourceDateEpoch);
  if (options.compact) ShareEqualImages(pdf);
  if (options.pdfA != PdfA::kNone) MakePdfA(pdf, options.pdfA, losses);
  // The digest of the result is to be all of the identifier.
  if (options.sourceDateEpoch) pdf.getTrailer().removeKey("/ID");
}

}  // namespace

std::string Contradiction(const FinishOptions& options) {
  if (options.pdfA != PdfA::kNone && options.encryption) return "PDF/A excludes encryption";
  if (options.pdfA == PdfA::k2b && !options.attachments.empty()) {
    return "PDF/A-2b excludes attachments; PDF/A-3b allows them";
  }
  return {};
}

std::vector<std::string> FinishFile(const std::filesystem::path& input, const std::filesystem::path& output,
                                    const FinishOptions& options) {
  std::unique_ptr<QPDF> pdf = Open(input);
  std::vector<std::string> losses;
  try {
    Change(*pdf, options, losses);
  } catch (const NoPdfA& reason) {
    const std::string name = options.pdfA == PdfA::k2b ? "PDF/A-2b" : "PDF/A-3b";
    throw FileError(input, 0, "cannot become " + name + ": " + reason.what());
  } catch (const FileError&) {
    throw;
  } catch (const std::exception& error) {
    throw FileError(input, 0, std::string("cannot be changed: ") + error.what());
  }
  for (std::string& loss : losses) loss.insert(0, PathText(input) + ": ");
  const std::vector<std::string> repairs = Repairs(*pdf, input);
  losses.insert(losses.begin(), repairs.begin(), repairs.end());
  WritePdf(std::move(pdf), output, options);
  return losses;
}

}  // namespace hdiplot
