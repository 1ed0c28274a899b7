// The start-up banner and about box.
#pragma once

namespace zelvane {

void AddAboutPanel();

}  // namespace zelvane
