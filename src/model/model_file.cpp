#include "model/model_file.h"

#include <optional>

#include "formats/input_file.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "model/model_text.h"
#include "platform/safe_file.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr char ReadTitle[] = "Read Parameters";
constexpr char NotOpened[] = ": cannot open ";  // in the title of the dialog that asks for another
constexpr char SaveTitle[] = "Save Parameters";
constexpr char ModelFilter[] = "*.mod";
constexpr char CannotWrite[] =
    "Either file cannot be created (e.g. no space on disk) or cannot overwrite Read-only file.";

constexpr int OpenAttempts = 2;  // names asked for while a file cannot be opened

/// A model file takes some 60 KB. Of a larger one this much is read, as if it had been cut off there, so that
/// a wrong name costs neither the memory nor the time that its file would.
constexpr std::size_t MaxModelBytes = std::size_t{16} * 1024 * 1024;

std::optional<std::string> AskForModel(const std::string& title, bool save) {
  FileRequest request;
  request.title = title;
  request.defaultName = ModelFilter;
  request.filter = ModelFilter;
  request.save = save;
  return FileSelectPopup(request);
}

/// Reads the bytes of the file `path`; while that cannot be done, asks for another name and changes `path` to
/// it.
std::optional<std::string> ReadBytesAsking(std::string& path) {
  auto bytes = ReadBytes(path, MaxModelBytes);
  for (int attempt = 0; !bytes && attempt < OpenAttempts; ++attempt) {
    const auto chosen = AskForModel(ReadTitle + (NotOpened + path), false);
    if (!chosen) return std::nullopt;
    path = *chosen;
    bytes = ReadBytes(path, MaxModelBytes);
  }
  return bytes;
}

/// Takes the model out of a file's bytes. The name becomes the model's only together with its content.
Outcome TakeModel(const std::optional<std::string>& bytes, const std::string& path) {
  if (!bytes || !ReadModelText(*bytes)) return Outcome::Refused;
  Model.ModelFileName = path;
  ModelFileCameIn.Tell();
  return Outcome::Done;
}

Outcome ReadAsking(std::string path) {
  const auto bytes = ReadBytesAsking(path);
  return TakeModel(bytes, path);
}

Outcome WriteTo(const std::string& path) {
  ModelFileToSave.Tell();
  if (!ReplaceFile(path, ModelText())) {
    MessagePopup(FileErrorTitle, CannotWrite);
    return Outcome::Failed;
  }
  Model.ModelFileName = path;
  ModelFileNamed.Tell();
  return Outcome::Done;
}

}  // namespace

Outcome ModelFileRead() {
  return ReadAsking(Model.ModelFileName);
}

Outcome ModelFileReadNamed(const std::string& path) {
  return TakeModel(ReadBytes(path, MaxModelBytes), path);
}

Outcome ModelFileWrite() {
  return WriteTo(Model.ModelFileName);
}

Outcome OpenParameterFile() {
  const auto path = AskForModel(ReadTitle, false);
  return path ? ReadAsking(*path) : Outcome::Refused;
}

Outcome SaveParameters() {
  const auto path = AskForModel(SaveTitle, true);
  return path ? WriteTo(*path) : Outcome::Refused;
}

}  // namespace zelvane
