// Writes the ABF template files of the program to the given folder: make_templates data
#include <iostream>
#include <string>

#include "platform/safe_file.h"
#include "trace/trace_write.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_templates FOLDER\n";
    return 2;
  }
  for (const char* name : {"SAMPLABF.DAT", "GAPFREE.ABF", "EPISODE-10.ABF"}) {
    const zelvane::AbfTemplate bytes = zelvane::AbfTemplateBytes(name);
    const std::string path = std::string(argv[1]) + '/' + name;
    if (!zelvane::ReplaceFile(path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()})) {
      std::cerr << path << ": cannot be written\n";
      return 1;
    }
  }
  return 0;
}
