// Colours and style of the windows, light and dark.
#pragma once

#include <QColor>
#include <QIcon>
#include <QString>
#include <optional>

namespace zelvane {

enum class Theme { System, Light, Dark };

/// Returns the theme named "light", "dark" or "system"; nullopt for another word.
std::optional<Theme> ThemeNamed(const QString& word);
QString ThemeWord(Theme theme);

/// Sets colours and style of the application. System is light or dark as the desktop's own palette is.
void ApplyTheme(Theme theme);

/// Gives the windows dark ink on white while it exists, for printers.
class OnPaper {
 public:
  OnPaper();
  ~OnPaper();
  OnPaper(const OnPaper&) = delete;
  OnPaper& operator=(const OnPaper&) = delete;

 private:
  static void dress();
};

bool IsDark();

/// Returns the colour of marks and of what is selected.
QColor AccentColour();

/// Returns the colour of a refused text.
QColor RefusedColour();

/// Returns a drawing in the colours of the theme: "model", "stimulus", "analysis", "rscm", "run", "stop",
/// "open", "save", "undo", "redo". For any other name returns a plain disc.
QIcon ThemedIcon(const QString& name);

}  // namespace zelvane
