// Tells the front end that a record changed.
#pragma once

namespace zelvane {

struct Panel;
struct Graph;

void AnnouncePanel(Panel& panel);
void AnnounceGraph(Graph& graph);

void AnnouncePrint(Panel& panel);

/// Shows a panel modally through the front end. Returns false on cancel, or without a front end.
bool AskModal(Panel& panel, const char* text);

}  // namespace zelvane
