#include "model/model_file.h"

#include <optional>

#include "formats/input_file.h"
#include "model/model_events.h"
#include "model/model_store.h"
#include "model/model_text.h"
#include "platform/file_names.h"
#include "platform/safe_file.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr char ReadTitle[] = "Read Parameters";
constexpr char NotOpened[] = ": cannot open ";  // part of the title of the dialog that asks for another name
constexpr char SaveTitle[] = "Save Parameters";
constexpr char ModelFilter[] = "*.mod";
constexpr char CannotWrite[] =
    "Either file cannot be created (e.g. no space on disk) or cannot overwrite Read-only file.";

constexpr int OpenAttempts = 2;  // times to ask for another name when a file cannot be opened

/// A model file has about 60 KB. A larger file is read up to this length, so that a wrong name costs little
/// memory and time.
constexpr std::size_t MaxModelBytes = std::size_t{16} * 1024 * 1024;

std::optional<std::string> AskForModel(const std::string& title, bool save) {
  FileRequest request;
  request.title = title;
  request.defaultName = ModelFilter;
  request.filter = ModelFilter;
  request.save = save;
  return FileSelectPopup(request);
}

/// Reads the bytes of the file `path`. On failure asks for another name and changes `path` to it.
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

/// Reads the model from a file's bytes. The model gets the name of the file only together with its contents.
Outcome ReadModel(const std::optional<std::string>& bytes, const std::string& path, bool* faulty = nullptr) {
  ModelFaults faults;
  if (!bytes || !ReadModelText(*bytes, &faults)) return Outcome::Refused;
  for (const std::string& fault : faults) Note(FileNameOf(path) + ": " + fault + '.');
  if (faulty != nullptr) *faulty = !faults.empty();
  Model.ModelFileName = path;
  Outcome outcome = Outcome::Done;
  ModelFileCameIn.Tell(outcome);
  return outcome;
}

Outcome ReadAsking(std::string path) {
  const auto bytes = ReadBytesAsking(path);
  return ReadModel(bytes, path);
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

Outcome ModelFileReadNamed(const std::string& path, bool* faulty) {
  return ReadModel(ReadBytes(path, MaxModelBytes), path, faulty);
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
