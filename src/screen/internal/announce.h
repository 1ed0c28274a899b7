// Telling the front end that a record changed.
#pragma once

namespace zelvane {

struct Panel;
struct Graph;

void AnnouncePanel(Panel& panel);
void AnnounceGraph(Graph& graph);

void AnnouncePrint(Panel& panel);

/// Runs a panel modally through the front end; false when cancelled or when there is none.
bool AskModal(Panel& panel, const char* text);

}  // namespace zelvane
